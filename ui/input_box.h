// One line of text from the user, such as a password or a name.
#pragma once

#include <QDialog>

#include <memory>

class QLineEdit;

namespace Ui {
class InputBox;
}

namespace korvadex {

class InputBox : public QDialog {
    Q_OBJECT

  public:
    // A secret is shown as dots.
    InputBox(const QString& prompt, bool isSecret, QWidget* parent);
    ~InputBox() override;

    // To choose from; another text can be typed.
    void Offer(const QStringList& texts);
    // To begin with; typing replaces it.
    void Propose(const QString& text);
    QString Text() const;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    QLineEdit* Field() const;

    std::unique_ptr<Ui::InputBox> ui;
};

} // namespace korvadex
