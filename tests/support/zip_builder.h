// Zip archives for tests, byte by byte: sound ones, and such as no tool would make.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korvadex::test {

class ZipBuilder {
  public:
    struct Options {
        bool isStored = false;                      // not deflated
        std::string password = {};                  // encrypted the old way of PKZIP when not empty
        bool hasUtf8Flag = false;                   // says that the name is UTF-8
        std::uint32_t unixMode = 0;                 // set: the member comes from Unix, with this mode (0120777: a link)
        std::uint16_t method = 0xFFFF;              // set: what the archive claims the method to be
        std::optional<std::uint32_t> crc = {};      // set: what the archive claims the CRC-32 to be
        std::optional<std::uint32_t> size = {};     // set: what it claims the unpacked size to be
        std::optional<std::uint32_t> unixTime = {}; // set: an extended timestamp field
        std::string padding = {};                   // behind the extra fields
    };

    // The name is taken as it is: bytes, separators and all. One that ends in "/" is a directory.
    ZipBuilder& Add(std::string_view name, std::string_view bytes, const Options& options);
    ZipBuilder& Add(std::string_view name, std::string_view bytes = "") { return Add(name, bytes, Options()); }
    ZipBuilder& Comment(std::string_view text) {
        comment = text;
        return *this;
    }

    std::string Bytes() const;

  private:
    struct Member {
        std::string name, data, extra;
        Options options;
        std::uint32_t crc = 0, size = 0, offset = 0;
        std::uint16_t flags = 0, method = 0;
    };
    static std::string Header(const Member& member, bool isCentral);

    std::string contents;
    std::vector<Member> members;
    std::string comment;
};

} // namespace korvadex::test
