#include "tests/support/zip_builder.h"

#include <array>
#include <zlib.h>

namespace korvadex::test {

namespace {

struct Number {
    int size; // bytes, the lowest first
    std::size_t value;
};
std::string Numbers(std::initializer_list<Number> numbers) {
    std::string bytes;
    for (auto [size, value] : numbers)
        for (; size > 0; --size, value >>= 8)
            bytes += static_cast<char>(value & 0xFF);
    return bytes;
}

const Bytef* BytesOf(std::string_view text) {
    return reinterpret_cast<const Bytef*>(text.data());
}

// zlib's own form without its beginning and its end.
std::string Deflated(std::string_view bytes) {
    const auto count = static_cast<uLong>(bytes.size());
    uLongf size = compressBound(count);
    std::string result(size, '\0');
    compress2(reinterpret_cast<Bytef*>(result.data()), &size, BytesOf(bytes), count, Z_BEST_SPEED);
    return result.substr(2, size - 6);
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
    member.data = isStored ? std::string(bytes) : Deflated(bytes);
    if (!options.password.empty()) {
        member.flags |= 1;
        // Twelve bytes of which the last tells a right password.
        const std::string start = "elevenbytes" + std::string(1, static_cast<char>(realCrc >> 24));
        member.data = Cipher(options.password).Encrypt(start + member.data);
    }
    if (options.hasUtf8Flag)
        member.flags |= 0x800;
    if (options.unixTime)
        member.extra = Numbers({{2, 0x5455}, {2, 5}, {1, 1}, {4, *options.unixTime}});
    member.extra += options.padding;
    member.offset = static_cast<std::uint32_t>(contents.size());
    contents += Header(member, false) + member.data;
    members.push_back(std::move(member));
    return *this;
}

std::string ZipBuilder::Header(const Member& member, bool isCentral) {
    const bool isUnix = member.options.unixMode != 0;
    const std::string shared = Numbers({{2, 20},
                                        {2, member.flags},
                                        {2, member.method},
                                        {2, 0x6000}, // 12:00:00
                                        {2, 0x28A5}, // 5 May 2000
                                        {4, member.crc},
                                        {4, member.data.size()},
                                        {4, member.size},
                                        {2, member.name.size()},
                                        {2, member.extra.size()}});
    if (!isCentral)
        return Numbers({{4, 0x04034B50}}) + shared + member.name + member.extra;
    return Numbers({{4, 0x02014B50}, {2, isUnix ? 0x031Eu : 0x0014u}}) + shared +
           Numbers({{6, 0}, {4, isUnix ? member.options.unixMode << 16 : 0x20u}, {4, member.offset}}) + member.name +
           member.extra;
}

std::string ZipBuilder::Bytes() const {
    std::string directory;
    for (const auto& member : members)
        directory += Header(member, true);
    return contents + directory +
           Numbers({{4, 0x06054B50},
                    {4, 0},
                    {2, members.size()},
                    {2, members.size()},
                    {4, directory.size()},
                    {4, contents.size()},
                    {2, comment.size()}}) +
           comment;
}

} // namespace korvadex::test
