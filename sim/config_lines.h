// A configuration file as it is looked through: in lines of lower case.
#pragma once

#include "package/walk.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace korvadex {

// One after another is read into the same memory.
class ConfigLines {
  public:
    // Why it could not be read; "" when it was.
    std::string Read(const FileSystem& files, const FileEntry& entry);
    // Of the file read last.
    const std::vector<std::string_view>& Lines() const { return lines; }

  private:
    std::string ReadBytes(const FileSystem& files, const FileEntry& entry, std::size_t& size);
    void Fold(std::size_t size);

    std::string text, folded;
    std::string_view lower;
    std::vector<std::string_view> lines;
};

} // namespace korvadex
