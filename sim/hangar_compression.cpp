#include "sim/hangar_compression.h"

#include "package/name_list.h"
#include "sim/hangar_package.h"

namespace korvadex {

std::optional<std::vector<std::string>> CompressInHangar(CommandContext& context, const LoadedPackage& package,
                                                         Compression& compression) {
    const bool compress = compression.isCompressing;
    if (compress && package.isCompressed && !HasFilesToPack(context, package.path))
        return std::nullopt;
    const std::string others = compress ? DescribePlaceOfOthers(context, package.path) : "";
    return others.empty() ? compression.Take(package.path)
                          : std::vector{package.path + " cannot be compressed: " + others};
}

void TellCompressed(CommandContext& context, const std::vector<std::string>& failures) {
    if (failures.empty())
        context.user.Tell("Done.");
    else
        context.user.Tell(
            ListNames(failures) +
                "\r\n\r\nWhat is named here was left alone.  Please run the command again when the cause is settled.",
            MessageIcon::Exclamation);
}

} // namespace korvadex
