// What loading learns from the configurations and small texts of a package.
#include "package/config_readers.h"
#include "fuzz/check.h"
#include "fuzz/drive.h"
#include "package/aircraft_cfg.h"
#include "platform/windows_path.h"

namespace korvadex::fuzz {

void Run(std::string_view input) {
    Drive drive;
    drive.Put("Staging\\a.cfg", input);
    drive.Put("Staging\\" + std::string(ImportNameFile), input);
    const Entries before = drive.Tree();
    const FileSystem& files = drive.Files();
    const std::string path = "C:\\Staging\\a.cfg";

    LoadedPackage package;
    ReadPanelAlias(files, path, package);
    for (const std::string& name : package.panelBitmapNames)
        Require(name.ends_with(".bmp") && FoldCase(name) == name && name.find_first_of("=\\\"") == name.npos,
                "the name of a bitmap is a file's, in lower case");
    PanelBitmapNames names;
    Require(ReadPanelBitmapNames(files, path, names) && names == package.panelBitmapNames,
            "both ways to the bitmaps' names find the same");
    ReadSoundAlias(files, path, package);
    Require(package.PackageSoundAlias == package.PackagePanelAlias, "an alias is read in the same way everywhere");

    ReadCompressionMarker(files, path, package);
    Require(package.compressionCode.find_first_not_of("0123456789") == std::string::npos, "a size is a number");
    ReadImportName(files, drive.Context().locations);
    const AircraftCfg cfg = ReadAircraftCfg(files, path);
    Require(cfg.text.Bytes() == input, "the text is the bytes of the file");
    Require(cfg.title.empty() || cfg.title == MultipleTitle || HasTitle(cfg), "a title comes from a line that has one");
    Require(drive.Tree() == before, "reading changes nothing");
}

} // namespace korvadex::fuzz
