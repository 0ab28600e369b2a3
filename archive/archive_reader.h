// An archive as whoever unpacks it sees it, of whatever kind: its members, and the bytes of one after another.
#pragma once

#include "archive/member_names.h"
#include "platform/file_system.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace korvadex {

struct ArchiveMember {
    MemberName name; // refused as well when the member is no file or directory
    std::uint64_t size = 0, packedSize = 0;
    FileTime time{}; // as it is: the archive does not tell
    bool isEncrypted = false;
};

// A member is known by its place among Members(). Codes are those of UnzipCode.
class ArchiveReader {
  public:
    virtual ~ArchiveReader() = default;

    virtual const std::vector<ArchiveMember>& Members() const = 0;
    // True when the archive has members besides, of which its records do not even tell the name and the size.
    virtual bool HasUnreadableRecords() const = 0;
    virtual std::size_t CommentSize() const = 0; // bytes

    // The members that will be opened, in this order. They may be unpacked ahead.
    virtual void Announce(std::vector<std::size_t> members) = 0;
    // Why a member cannot be read here, in words for the user; "" when it can.
    virtual std::string WhyUnreadable(std::size_t member) const = 0;
    // Opens a member, with its password when it is encrypted. Tells a wrong one (mostly).
    virtual int Open(std::size_t member, const std::string& password) = 0;
    // Hands the bytes of the opened member to the sink, piece by piece, until that answers other than Ok, which is then
    // the answer. Only the last word says that what the sink was given is good.
    using Sink = std::function<int(std::span<const std::byte>)>;
    virtual int Read(const Sink& sink) = 0;
};

// What came of opening an archive.
struct OpenedArchive {
    std::unique_ptr<ArchiveReader> reader; // none where the code is not Ok
    int code = 0;
    std::string explanation = {}; // a sentence that says more than the code; may be ""
};

// Sentences about archives that are sound and yet not read here, and what can be done with them.
inline constexpr const char* IsOnePart =
    "It is one part of an archive in several parts.  Please put them together with another program first.";
inline constexpr const char* IsPackedOddly = "It is packed in a way that Korvadex cannot unpack.";
inline constexpr const char* TakesTooMuchMemory = "It takes too much memory to unpack it.";
inline constexpr const char* UnpackElsewhere = "Please unpack it into Staging with another program.";

// The archive at this path, by the reader of its kind, which its bytes tell and not its name.
OpenedArchive OpenArchive(const FileSystem& files, const std::string& path);

} // namespace korvadex
