// A person who uses the program, in a thread of its own: where a command opens a window and waits for its answer, the
// person goes on.
#pragma once

#include <QCoreApplication>
#include <QString>

#include <exception>
#include <functional>

namespace korvadex::tour {

class Person {
  public:
    // Looks at the windows between two events, in their thread. What the look throws is thrown here.
    void See(const std::function<void()>& look) const;
    // What a window may come of that waits for an answer: returns at once.
    void Do(std::function<void()> deed);
    // Waits until this holds and no command is at work; throws, with `what` has not come, when it takes too long, and
    // what a deed has thrown.
    void Until(const QString& what, const std::function<bool()>& holds) const;

  private:
    bool IsAtRest() const;

    // For the thread of the windows alone.
    int underWay = 0;
    std::exception_ptr thrown;
};

} // namespace korvadex::tour
