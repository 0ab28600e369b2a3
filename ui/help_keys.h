// F1 in every window: the read-me page at the chapter on what has the keyboard.
#pragma once

#include <QObject>

#include <functional>
#include <span>
#include <utility>

namespace korvadex {

// Windows and controls by their object names, and the ids of their chapters. What is in none of them belongs to the
// shown side.
std::span<const std::pair<const char*, const char*>> HelpChapters();

class HelpKeys : public QObject {
  public:
    // While it lives, `open` is called with the id, "" for the shown side.
    HelpKeys(QObject* parent, std::function<void(const char*)> open);

    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    const std::function<void(const char*)> open;
};

} // namespace korvadex
