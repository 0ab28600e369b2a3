// Opening files and directories with other programs of the system, and saying so where that came to nothing.
#pragma once

#include "package/command_context.h"

#include <string>

namespace korvadex {

void OpenInEditor(CommandContext& context, const std::string& path);
void OpenWithItsProgram(CommandContext& context, const std::string& path);
void OpenInFileManager(CommandContext& context, const std::string& directory);
// The directory of the file, with the file selected where the host can do that.
void ShowInFileManager(CommandContext& context, const std::string& path);

// What is said of one that was started and failed later; the four above say the same at once.
void TellNotOpened(UserDialogs& user, const FailedOpening& failed);

} // namespace korvadex
