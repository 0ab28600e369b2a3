// The picture that greets the user while the program starts.
#pragma once

#include <QFrame>

#include <functional>
#include <memory>

namespace Ui {
class frmSplash;
}

namespace korvadex {

class frmSplash : public QFrame {
    Q_OBJECT

  public:
    // When its timer fires the splash calls showHangar and goes.
    explicit frmSplash(std::function<void()> showHangar);
    ~frmSplash() override;

  protected:
    // Makes way as soon as any other window of the program opens, such as a question.
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    std::unique_ptr<Ui::frmSplash> ui;
};

} // namespace korvadex
