#include "package/opening.h"

namespace korvadex {

void OpenInEditor(CommandContext& context, const std::string& path) {
    if (!context.launcher.OpenInEditor(path))
        TellNotOpened(context.user, {OpenedIn::Editor, path});
}

void OpenWithItsProgram(CommandContext& context, const std::string& path) {
    if (!IsStarted(context.launcher.OpenDocument(path)))
        TellNotOpened(context.user, {OpenedIn::ItsProgram, path});
}

void OpenInFileManager(CommandContext& context, const std::string& directory) {
    if (!context.launcher.OpenInFileManager(directory, WindowState::Normal))
        TellNotOpened(context.user, {OpenedIn::FileManager, directory});
}

void ShowInFileManager(CommandContext& context, const std::string& path) {
    if (!context.launcher.ShowInFileManager(path))
        TellNotOpened(context.user, {OpenedIn::FileManager, ParentDirectory(path)});
}

void TellNotOpened(UserDialogs& user, const FailedOpening& failed) {
    const auto tell = [&](const std::string& text) { user.Tell(text, MessageIcon::Exclamation); };
    switch (failed.what) {
    case OpenedIn::Editor:
        return tell("No text editor could be started for " + failed.path +
                    ".  Please choose a program for text files in the settings of your system.");
    case OpenedIn::FileManager:
        return tell("The directory " + failed.path + " could not be opened.");
    case OpenedIn::ItsProgram:
        return tell("I don't know what action to take with the selected file type.  "
                    "Try associating it with a program in Windows Explorer.");
    }
}

} // namespace korvadex
