#include "archive/zip_library.h"

#include "archive/deflated_file.h"
#include "archive/zip_source.h"
#include "platform/windows_path.h"

#include <limits>

namespace korvadex {

namespace {

constexpr zip_uint16_t ExtendedTimestamp = 0x5455;
constexpr zip_uint32_t DosArchive = 0x20, DosReadOnly = 0x01;

bool IsOffered(const ZPOPT& options) {
    return options == ZPOPT{.fQuiet = options.fQuiet, .fJunkDir = 1, .flevel = options.flevel} &&
           options.flevel >= '1' && options.flevel <= '9';
}

// The time in whole seconds of UTC beside the local one in two-second steps that every member has.
void SetMemberTime(zip_t* archive, zip_uint64_t index, FileTime time) {
    const auto seconds = std::chrono::floor<std::chrono::seconds>(time).time_since_epoch().count();
    zip_file_set_mtime(archive, index, static_cast<time_t>(seconds), 0);
    if (seconds < std::numeric_limits<std::int32_t>::min() || seconds > std::numeric_limits<std::int32_t>::max())
        return;
    std::array<zip_uint8_t, 5> field{1};
    for (std::size_t i = 0; i < 4; ++i)
        field[i + 1] = static_cast<zip_uint8_t>(seconds >> (8 * i) & 0xFF);
    zip_file_extra_field_set(archive, index, ExtendedTimestamp, ZIP_EXTRA_FIELD_NEW, field.data(),
                             static_cast<zip_uint16_t>(field.size()), ZIP_FL_CENTRAL | ZIP_FL_LOCAL);
}

} // namespace

void ZpInit(ZipState& state, ZipCallbacks callbacks) {
    state.callbacks = std::move(callbacks);
}

void ZpSetOptions(ZipState& state, const ZPOPT& options) {
    state.options = options;
}

const ZPOPT& ZpGetOptions(const ZipState& state) {
    return state.options;
}

int ZpArchive(ZipState& state, FileSystem& files, const ZCL& names, DeflatedFile* prepared) {
    const ZPOPT& options = ZpGetOptions(state);
    if (names.argc != 1 || !IsOffered(options))
        return ZipCode::BadParameter;
    const std::string& path = names.FNV[0];
    const std::string name = LastPathComponent(path);
    const int level = options.flevel - '0';

    const auto info = files.Info(path);
    if (!info || info->kind != EntryKind::File)
        return ZipCode::CannotOpen;
    if (info->size >= std::numeric_limits<std::uint32_t>::max())
        return ZipCode::TooBig;
    if (state.callbacks.service && state.callbacks.service(name, info->size) != 0)
        return ZipCode::Ok;
    DeflatedFile ownContents(files, path);
    if (!prepared) {
        if (!ownContents.Read(*info))
            return ZipCode::ReadError;
        Deflater deflater;
        ownContents.Pack(deflater, level);
    }
    DeflatedFile& contents = prepared ? *prepared : ownContents;

    ZipError error;
    ZipHandle archive = CreateZip(files, names.lpszZipFN, error);
    if (!archive)
        return error.code() == ZIP_ER_MEMORY ? ZipCode::NoMemory : ZipCode::CannotCreate;
    ZipSource source(contents.MakeSource(error));
    const zip_int64_t index = source ? zip_file_add(archive.get(), name.c_str(), source.get(), ZIP_FL_ENC_UTF_8) : -1;
    if (index < 0)
        return ZipCode::NoMemory;
    static_cast<void>(source.release()); // belongs to the archive from here on
    const auto member = static_cast<zip_uint64_t>(index);
    zip_set_file_compression(archive.get(), member, contents.MethodForLibrary(),
                             contents.MethodForLibrary() != ZIP_CM_DEFLATE ? 0 : static_cast<zip_uint32_t>(level));
    SetMemberTime(archive.get(), member, info->time);
    zip_file_set_external_attributes(archive.get(), member, 0, ZIP_OPSYS_DOS,
                                     info->readOnly ? DosArchive | DosReadOnly : DosArchive);
    if (state.callbacks.print)
        state.callbacks.print("  adding: " + name + "\r\n");
    if (zip_close(archive.get()) != 0)
        return contents.HasReadError() ? ZipCode::ReadError : ZipCode::WriteError;
    static_cast<void>(archive.release()); // closing has freed it
    return ZipCode::Ok;
}

} // namespace korvadex
