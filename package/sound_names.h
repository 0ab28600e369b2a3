// Telling the sounds of an aircraft from those of its gauges: sound.cfg names the former.
#pragma once

#include "platform/file_system.h"

#include <string>
#include <string_view>
#include <vector>

namespace korvadex {

// The lines of a sound.cfg, in lower case.
Result<std::vector<std::string>> ReadSoundLines(const FileSystem& files, const std::string& path);

// True for the folded name of a .wav file that no line mentions (without its extension): "click.wav".
bool IsGaugeSound(std::string_view key, const std::vector<std::string>& soundLines);

} // namespace korvadex
