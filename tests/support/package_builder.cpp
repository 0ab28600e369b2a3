#include "tests/support/package_builder.h"

#include "platform/windows_path.h"
#include "tests/support/zip_builder.h"

#include <gtest/gtest.h>

namespace korvadex::test {

const std::map<std::string, std::string>& PackageBuilder::Files() {
    static const std::map<std::string, std::string> files = {
        {"aircraft.cfg", "[fltsim.0]\r\ntitle=Lear 45\r\nmodel=\r\npanel=\r\nsound=\r\ntexture=\r\n"},
        {"Lear.air", "flight model"},
        {"Lear_check.txt", "checklist"},
        {"Model\\model.cfg", "[models]\r\nnormal=lear\r\n"},
        {"Model\\lear.mdl", "three dimensions"},
        {"Panel\\panel.cfg",
         "[Window00]\r\nfile=LearPanel.bmp\r\ngauge00=LearClock, 10,20\r\ngauge01=LearCab!Altimeter, 30,20\r\n"},
        {"Panel\\LearPanel.bmp", "BM panel"},
        {"Texture\\Lear_t.bmp", "BM texture"},
        {"Texture\\lear.r8", "texture"},
        {"Sound\\sound.cfg", "[SOUND_ENGINE.1]\r\nfilename=engine\r\n"},
        {"Sound\\Engine.wav", "RIFF engine"},
        {"Sound\\Click.wav", "RIFF gauge click"},
        {"Gauges\\LearClock.gau", "MZ clock"},
        {"Gauges\\LearCab.cab", "MSCF cabinet"},
        {"Images\\lear.jpg", "JFIF"},
        {"Documentation\\readme.txt", "read me"},
        {"Miscellaneous\\smoke.fx", "smoke"},
        {"Miscellaneous\\helper.dll", "MZ helper"},
        {"Unrecognized Files\\lear.xyz", "who knows"},
    };
    return files;
}

PackageBuilder::PackageBuilder(TemporaryDrive& testDrive, std::string packageDirectory)
    : drive(testDrive), directory(std::move(packageDirectory)) {
    for (const auto& [relative, bytes] : Files())
        drive.Put(directory + relative, bytes);
}

PackageBuilder& PackageBuilder::With(std::string_view relative, std::string_view bytes) {
    drive.Put(directory + std::string(relative), bytes);
    return *this;
}

PackageBuilder& PackageBuilder::Without(std::string_view relative) {
    const Status status = drive.Files().Delete(drive.At(directory + std::string(relative)));
    EXPECT_TRUE(bool(status)) << relative << ": " << DescribeFault(status.fault);
    return *this;
}

PackageBuilder& PackageBuilder::WithoutAll() {
    for (const auto& [relative, bytes] : Files())
        Without(relative);
    return *this;
}

PackageBuilder& PackageBuilder::Packed(std::string_view relative) {
    const std::string bytes = drive.Get(directory + std::string(relative));
    return With(relative, ZipBuilder().Add(LastPathComponent(relative), bytes).Bytes());
}

} // namespace korvadex::test
