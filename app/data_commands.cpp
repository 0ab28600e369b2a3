// The commands of the Data menu, on whichever side is shown.
#include "app/program.h"
#include "media/aircraft_info.h"
#include "media/notes.h"

namespace korvadex {

void Program::CreateNotes() {
    Run([&] {
        if (IsShownThere())
            Refresh(korvadex::CreateNotes(context, package));
    });
}

void Program::DeleteNotes() {
    Run([&] {
        if (IsShownThere())
            Refresh(korvadex::DeleteNotes(context, package));
    });
}

void Program::ReadNotes() {
    Run([&] {
        if (IsShownThere())
            korvadex::ReadNotes(context, package);
    });
}

void Program::Explore() {
    Run([&] {
        if (IsShownThere())
            ExplorePackage(context, package);
    });
}

void Program::EditInformation() {
    Run([&] { EditPackageInformation(); });
}

void Program::EditPackageInformation() {
    if (!IsShownThere() || !ArePlacesThere({Place::Simulator}))
        return;
    ReloadWhenChanged(); // what is edited must be what is there
    EditAircraftInfo(context, package);
}

} // namespace korvadex
