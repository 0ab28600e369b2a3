// The commands of the Data menu, on whichever side is shown.
#include "app/program.h"
#include "media/aircraft_info.h"
#include "media/notes.h"

namespace korvadex {

void Program::CreatePackageNotes() {
    Run(Titled("Create notes"), [&] {
        if (IsShownThere())
            ShowChanges(CreateNotes(context, package));
    });
}

void Program::DeletePackageNotes() {
    Run(Titled("Delete notes"), [&] {
        if (IsShownThere())
            ShowChanges(DeleteNotes(context, package));
    });
}

void Program::ReadPackageNotes() {
    Run(Titled(""), [&] {
        if (IsShownThere())
            ReadNotes(context, package);
    });
}

void Program::Explore() {
    Run(Titled(""), [&] {
        if (IsShownThere())
            ExplorePackage(context, package);
    });
}

void Program::EditInformation() {
    Run(Titled("Information"), [&] {
        if (!IsShownThere() || !ArePlacesThere({Place::Simulator}))
            return;
        ReloadWhenChanged(); // what is edited must be what is there
        EditAircraftInfo(context, package);
    });
}

} // namespace korvadex
