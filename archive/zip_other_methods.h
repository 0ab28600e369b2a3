// Members of zip archives that the zip library, as it is built here, can hand out packed only: bzip2, LZMA, xz,
// Zstandard and PPMd by libarchive.
#pragma once

#include "archive/archive_reader.h"
#include "archive/zip_member.h"

namespace korvadex {

// Hands the bytes of the member to the sink, as ArchiveReader::Read does; the file gives them packed.
int ReadOtherMethod(const ZipMember& member, zip_file_t& file, const ArchiveReader::Sink& sink);

} // namespace korvadex
