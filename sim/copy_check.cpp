#include "sim/copy_check.h"

#include "archive/in_place.h"

namespace korvadex {

std::string FirstNotCopied(CommandContext& context, const LoadedPackage& package, CopyRoot root,
                           const std::string& destination) {
    const auto holds = [&](const std::string& copy, const std::string& source) {
        const auto made = context.files.Info(copy), from = context.files.Info(source);
        return made && from && made->kind == EntryKind::File &&
               (made->size == from->size || made->size == UnpackedSize(context.files, FileEntry(source, *from)));
    };
    for (const PlannedFile& file : PlanCopy(context, package, root).files) {
        if (!holds(destination + file.relative, file.source))
            return file.source;
    }
    if (root == CopyRoot::Staging) {
        for (const FileEntry& gauge : package.ComponentFiles[Gauges]) {
            if (!holds(context.locations.StagingDir + "gauges\\" + gauge.Name(), gauge.path))
                return gauge.path;
        }
    }
    return "";
}

} // namespace korvadex
