#include "tests/support/zip_builder.h"

#include <array>
#include <stdexcept>
#include <zlib.h>

namespace korvadex::test {

namespace {

void Put16(std::string& bytes, std::uint32_t value) {
    bytes += static_cast<char>(value & 0xFF);
    bytes += static_cast<char>(value >> 8 & 0xFF);
}

void Put32(std::string& bytes, std::uint32_t value) {
    Put16(bytes, value & 0xFFFF);
    Put16(bytes, value >> 16);
}

const Bytef* BytesOf(std::string_view text) {
    return reinterpret_cast<const Bytef*>(text.data());
}

std::string Deflated(std::string_view bytes, int level) {
    z_stream stream{};
    if (deflateInit2(&stream, level, Z_DEFLATED, -MAX_WBITS, 8, Z_DEFAULT_STRATEGY) != Z_OK)
        throw std::runtime_error("zlib");
    std::string result(deflateBound(&stream, static_cast<uLong>(bytes.size())), '\0');
    stream.next_in = const_cast<Bytef*>(BytesOf(bytes));
    stream.avail_in = static_cast<uInt>(bytes.size());
    stream.next_out = reinterpret_cast<Bytef*>(result.data());
    stream.avail_out = static_cast<uInt>(result.size());
    deflate(&stream, Z_FINISH);
    result.resize(stream.total_out);
    deflateEnd(&stream);
    return result;
}

// The cipher of PKZIP 2: three keys that the plain bytes drive.
class Cipher {
  public:
    explicit Cipher(std::string_view password) {
        for (const char letter : password)
            Update(static_cast<unsigned char>(letter));
    }
    std::string Encrypt(std::string_view plain) {
        std::string result;
        for (const char letter : plain) {
            const std::uint32_t mix = (keys[2] | 2) & 0xFFFF;
            const auto plainByte = static_cast<unsigned char>(letter);
            result += static_cast<char>(plainByte ^ (mix * (mix ^ 1) >> 8 & 0xFF));
            Update(plainByte);
        }
        return result;
    }

  private:
    static std::uint32_t Crc(std::uint32_t crc, std::uint32_t byte) {
        return static_cast<std::uint32_t>(get_crc_table()[(crc ^ byte) & 0xFF]) ^ crc >> 8;
    }
    void Update(std::uint32_t byte) {
        keys[0] = Crc(keys[0], byte);
        keys[1] = (keys[1] + (keys[0] & 0xFF)) * 134775813 + 1;
        keys[2] = Crc(keys[2], keys[1] >> 24);
    }
    std::array<std::uint32_t, 3> keys = {305419896, 591751049, 878082192};
};

} // namespace

ZipBuilder& ZipBuilder::Add(std::string_view name, std::string_view bytes, const Options& options) {
    Member member;
    member.name = name;
    member.options = options;
    const auto realCrc = static_cast<std::uint32_t>(crc32(0, BytesOf(bytes), static_cast<uInt>(bytes.size())));
    member.crc = options.crc.value_or(realCrc);
    member.size = options.size.value_or(static_cast<std::uint32_t>(bytes.size()));
    const bool isStored = options.isStored || bytes.empty();
    member.method = options.method != 0xFFFF ? options.method : isStored ? 0 : 8;
    member.data = isStored ? std::string(bytes) : Deflated(bytes, options.level);
    if (!options.password.empty()) {
        member.flags |= 1;
        // Twelve bytes of which the last tells a right password.
        const std::string start = "elevenbytes" + std::string(1, static_cast<char>(realCrc >> 24));
        member.data = Cipher(options.password).Encrypt(start + member.data);
    }
    if (options.hasUtf8Flag)
        member.flags |= 0x800;
    if (options.unixTime) {
        Put16(member.extra, 0x5455);
        Put16(member.extra, 5);
        member.extra += '\1';
        Put32(member.extra, *options.unixTime);
    }
    member.extra += options.padding;
    member.offset = static_cast<std::uint32_t>(contents.size());
    contents += Header(member, false) + member.data;
    members.push_back(std::move(member));
    return *this;
}

std::string ZipBuilder::Header(const Member& member, bool isCentral) {
    const bool isUnix = member.options.unixMode != 0;
    std::string header;
    Put32(header, isCentral ? 0x02014B50 : 0x04034B50);
    if (isCentral)
        Put16(header, isUnix ? 0x031E : 0x0014);
    Put16(header, 20);
    Put16(header, member.flags);
    Put16(header, member.method);
    Put16(header, 0x6000); // 12:00:00
    Put16(header, 0x28A5); // 5 May 2000
    Put32(header, member.crc);
    Put32(header, static_cast<std::uint32_t>(member.data.size()));
    Put32(header, member.size);
    Put16(header, static_cast<std::uint32_t>(member.name.size()));
    Put16(header, static_cast<std::uint32_t>(member.extra.size()));
    if (isCentral) {
        Put16(header, 0); // comment
        Put16(header, 0); // disk
        Put16(header, 0); // internal attributes
        Put32(header, isUnix ? member.options.unixMode << 16 : 0x20);
        Put32(header, member.offset);
    }
    return header + member.name + member.extra;
}

std::string ZipBuilder::Bytes() const {
    std::string directory;
    for (const auto& member : members)
        directory += Header(member, true);
    std::string bytes = contents + directory;
    Put32(bytes, 0x06054B50);
    Put32(bytes, 0);
    Put16(bytes, static_cast<std::uint32_t>(members.size()));
    Put16(bytes, static_cast<std::uint32_t>(members.size()));
    Put32(bytes, static_cast<std::uint32_t>(directory.size()));
    Put32(bytes, static_cast<std::uint32_t>(contents.size()));
    Put16(bytes, static_cast<std::uint32_t>(comment.size()));
    return bytes + comment;
}

} // namespace korvadex::test
