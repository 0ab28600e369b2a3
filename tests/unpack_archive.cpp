// Unpacks one archive as Korvadex does, into an empty directory of the host, and says what it has to say of it;
// tools/odd-archives starts it.
#include "archive/unpack.h"
#include "tests/support/temporary_drive.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>

namespace fs = std::filesystem;

int main(int argumentCount, char** arguments) {
    if (argumentCount != 3)
        return 2;
    korvadex::test::TemporaryDrive drive;
    const std::string name = fs::path(arguments[1]).filename().string();
    std::ifstream archive(arguments[1], std::ios::binary);
    drive.Put(name, std::string(std::istreambuf_iterator<char>(archive), {}));
    drive.MakeDirectory("Staging");
    const korvadex::Locations locations{drive.At("Staging\\"), "", ""};
    const korvadex::UnpackReport report =
        korvadex::Unpack({drive.Files(), locations}, {.archive = drive.At(name), .target = drive.At("Staging\\Z\\")});
    std::cout << "code " << report.code << "\n";
    for (const auto& [member, reason] : report.refused)
        std::cout << "refused " << member << ": " << reason << "\n";
    for (const std::string& explanation : report.explanations)
        std::cout << explanation << "\n";
    if (const fs::path unpacked = drive.Files().HostPath(drive.At("Staging\\Z")); fs::exists(unpacked))
        fs::copy(unpacked, arguments[2], fs::copy_options::recursive);
    return 0;
}
