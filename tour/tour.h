// The tour: the program as its start makes it, on an example of its own, used step by step by a person who takes
// pictures.
#pragma once

#include "tour/person.h"

#include <QDir>
#include <QPointer>
#include <QSize>
#include <QWidget>

#include <memory>
#include <vector>

namespace korvadex::tour {

class Tour;

// What a step leaves behind, or whether it wants to start the program itself (and leaves what it likes).
enum class Kind { Looks, Changes, Starts };
// A walk from the main window to another one, or through several.
struct Step {
    const char* name; // and of its picture
    std::function<void(Tour&)> walk;
    Kind kind = Kind::Looks;
};
const std::vector<Step>& Steps();

class Tour {
  public:
    // Pictures go into the directory, which is there. The ground, where it is not empty, is a drive ("K:\\") with the
    // example on it, which keeps what the walk has made of it. It may inspect each window that it takes a picture of,
    // and say what is wrong with it.
    explicit Tour(const QDir& directory, const std::string& ground = {}, bool inspects = false);
    ~Tour();

    // Throws, saying what was missed, where the program does not do what the step expects of it.
    void Walk(const Step& step);
    // Takes a picture of what can be seen at this moment, for someone who asks why the step failed, and ends: whatever
    // is open now cannot be trusted to close.
    [[noreturn]] void Abandon();
    int PictureCount() const { return pictureCount; }
    int FaultCount() const { return faultCount; }

    // --- for the steps: the example
    std::string At(const std::string& relative) const; // a path of its drive
    void Put(const std::string& relative, const std::string& bytes);
    void MakeDirectory(const std::string& relative);
    void Remove(const std::string& relative);
    std::string HostPath(const std::string& relative) const;

    // --- the program
    void Start();
    void StartWithSplash();

    // --- windows: what is waited for gets the keys and clicks that follow
    void Await(const char* window);
    // A message or a question that begins like this.
    void AwaitMessage(const QString& text);
    // The main window, when no window stands over it.
    void AwaitHangar() { Await("frmHangar"); }

    // --- mouse and keys
    void Press(const char* key); // "Ctrl+O"; where a menu is open it gets the key
    void Write(const QString& text);
    void Use(const std::function<void(QWidget& window)>& hands);
    void Click(const char* control);
    void Answer(const QString& button);
    void OpenMenu(const char* key);
    // An entry of a menu, by their keys.
    void Choose(const char* menu, const char* entry);
    // An archive of the directory of downloads.
    void ProcessZip(const char* archive);
    // Shows a package, in whichever category.
    void GoTo(const char* package);

    // --- the camera: the window that was waited for, or its upper left part, with what is open over it, when it has
    // come to rest. Without a name the step's own.
    void Photograph(const QSize& part = {}, const QString& name = {});
    // The whole scene.
    void PhotographAll(const QString& name = {});

  private:
    struct Example;
    struct Run;
    void Take(const std::function<QList<QWidget*>()>& windows, const QSize& part, const QString& name);
    void Inspect(const QString& name);
    void Leave();

    QWidget& Front() const;

    const QDir pictures;
    const std::string ground;
    const bool isInspecting;
    const Step* step = nullptr;
    int pictureCount = 0, faultCount = 0;
    Person person;
    std::unique_ptr<Example> example;
    // For the thread of the windows alone.
    std::unique_ptr<Run> run;
    QPointer<QWidget> front;
};

} // namespace korvadex::tour
