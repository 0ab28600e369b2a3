#include "archive/zip_member.h"

#include "archive/unzip_code.h"
#include "archive/whole_size.h"

#include <algorithm>
#include <array>

namespace korvadex {

namespace {

std::string NameOfMethod(std::uint16_t method) {
    switch (method) {
    case 1:
        return "a method of 1989 (shrink)";
    case 2:
    case 3:
    case 4:
    case 5:
        return "a method of 1989 (reduce)";
    case 6:
        return "a method of 1989 (implode)";
    case 9:
        return "the method Deflate64";
    case 12:
        return "the method bzip2";
    case 14:
        return "the method LZMA";
    case 93:
        return "the method Zstandard";
    case 95:
        return "the method xz";
    case 98:
        return "the method PPMd";
    default:
        return "the method number " + std::to_string(method);
    }
}

} // namespace

bool ZipMember::FitsInOnePiece() const {
    return encryption == ZIP_EM_NONE && IsInflatedHere() && size <= MaxWholeSize && packedSize <= MaxBuffers - size;
}

bool ZipMember::IsAuthenticated() const {
    const bool isAes = encryption == ZIP_EM_AES_128 || encryption == ZIP_EM_AES_192 || encryption == ZIP_EM_AES_256;
    return isAes && (method == ZIP_CM_DEFLATE || method == ZIP_CM_STORE);
}

bool ZipMember::IsInflatedHere() const {
    const bool isPlain = encryption == ZIP_EM_NONE && (method == ZIP_CM_DEFLATE || method == ZIP_CM_STORE);
    return isPlain || IsAuthenticated();
}

bool ZipMember::IsOfOtherMethod() const {
    constexpr std::array<std::uint16_t, 5> methods = {12, 14, 93, 95, 98}; // see NameOfMethod
    return zip_compression_method_supported(method, 0) == 0 && std::ranges::find(methods, method) != methods.end();
}

std::string WhyUnreadable(const ZipMember& member) {
    const bool isEncrypted = member.encryption != ZIP_EM_NONE;
    if (isEncrypted && zip_encryption_method_supported(member.encryption, 0) == 0)
        return "It is encrypted in a way that Korvadex cannot read.";
    const bool isKnown =
        zip_compression_method_supported(member.method, 0) != 0 && (member.hasCrc || member.IsAuthenticated());
    return isKnown || member.IsOfOtherMethod()
               ? ""
               : "It is packed with " + NameOfMethod(member.method) + ", which Korvadex cannot unpack.";
}

int UnzipCodeOf(int zipError) {
    switch (zipError) {
    case ZIP_ER_OK:
        return UnzipCode::Ok;
    case ZIP_ER_NOZIP:
    case ZIP_ER_NOENT:
    case ZIP_ER_OPEN:
        return UnzipCode::NotAnArchive;
    case ZIP_ER_MEMORY:
        return UnzipCode::NoMemory;
    case ZIP_ER_EOF:
    case ZIP_ER_SEEK:
        return UnzipCode::Truncated;
    case ZIP_ER_COMPNOTSUPP:
    case ZIP_ER_ENCRNOTSUPP:
    case ZIP_ER_MULTIDISK:
    case ZIP_ER_OPNOTSUPP:
        return UnzipCode::Unsupported;
    case ZIP_ER_NOPASSWD:
    case ZIP_ER_WRONGPASSWD:
        return UnzipCode::BadPassword;
    case ZIP_ER_INCONS:
        return UnzipCode::BadArchive;
    default:
        return UnzipCode::Error;
    }
}

int FailureOf(const ZipMember& member, zip_t& archive, zip_file_t* file) {
    const int code = zip_error_code_zip(file ? zip_file_get_error(file) : zip_get_error(&archive));
    // The old cipher takes one wrong password in 256 for right: then the bytes make no sense.
    const bool isNonsense = code == ZIP_ER_CRC || code == ZIP_ER_ZLIB || code == ZIP_ER_COMPRESSED_DATA;
    if (member.encryption != ZIP_EM_NONE && isNonsense)
        return UnzipCode::BadPassword;
    return UnzipCodeOf(code);
}

} // namespace korvadex
