// The commands of the Data menu, on whichever side is shown.
#include "app/program.h"
#include "media/aircraft_info.h"
#include "media/notes.h"

namespace korvadex {

void Program::CreateNotes() {
    Run([&] { korvadex::CreateNotes(context, package); });
}

void Program::DeleteNotes() {
    Run([&] { korvadex::DeleteNotes(context, package); });
}

void Program::ReadNotes() {
    Run([&] { korvadex::ReadNotes(context, package); });
}

void Program::Explore() {
    Run([&] { ExplorePackage(context, package); });
}

void Program::EditInformation() {
    Run([&] { EditPackageInformation(); });
}

void Program::EditPackageInformation() {
    ReloadWhenChanged(); // what is edited must be what is there
    EditAircraftInfo(context, package);
}

} // namespace korvadex
