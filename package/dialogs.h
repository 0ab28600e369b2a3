// What a command can ask the user in the middle of its work. The windows answer with modal dialogs, the tests
// with a script.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace korvadex {

enum class MessageIcon { None, Information, Exclamation, Critical };
enum class MessageButtons { Ok, OkCancel, YesNo };
enum class Answer { Ok, Cancel, Yes, No };

// A box may carry one check box, such as "Do this for all further duplicates".
struct MessageOptions {
    std::string checkBox; // "" for none
};
struct CheckedAnswer {
    Answer answer;
    bool isChecked;
};

// frmRename: what its fields hold when it comes up.
struct RenameEntry {
    std::string packageName, aircraftTitle;
};
struct RenameForm {
    RenameEntry entry;
    bool hasTitle = true; // false: the title field is disabled
    // cmdAccept with what the fields hold. True closes the dialog; false leaves it open, after a message.
    std::function<bool(const RenameEntry& entered)> accept;
};

// A row of frmMultipleCfg.
struct ConfigurationRow {
    std::string text;    // "Lear red  (fltsim.1)"
    std::string detail;  // "Texture: red", "" for none
    std::string picture; // the path of a picture of it, "" for none
};

// frmUnusedGauges.
struct UnusedGauge {
    std::string name, path; // lstFileList shows the name, with its directory where two have the same
};
struct UnusedGaugesForm {
    // To be called once, when the window stands: the search, which moves the window's progress bar (from 1 to
    // maximum) on its way.
    std::function<std::vector<UnusedGauge>(const std::function<void(int value, int maximum)>& progress)> search;
    // cmdDelete with the selected rows; what the list is to show from then on.
    std::function<std::vector<UnusedGauge>(const std::vector<int>& rows)> remove;
};

// frmMSFSImport.
struct ImportForm {
    std::vector<std::string> names; // of lstPackages
    // cmdOK, or a double click, on a row (-1: none is selected). True closes the dialog.
    std::function<bool(int row)> accept;
};

// frmInfo: the texts of aircraft.cfg that the simulator shows and that air traffic control speaks. Lines of the
// last two texts are separated by CR LF.
struct AircraftInfo {
    std::string atcId, atcAirline, atcFlightNumber, manufacturer, type, variation, atcType, atcModel;
    bool isHeavy = false, isEditable = false;
    std::string description, performance;

    bool operator==(const AircraftInfo&) const = default;
};
// What its combo boxes offer, each sorted without case.
struct InfoOffers {
    std::vector<std::string> atcAirlines = {}, manufacturers = {}, atcTypes = {}, atcModels = {};
};
struct InfoForm {
    std::string aircraft; // whose information it is, for the caption
    AircraftInfo info;
    // False: the file has no [fltsim.N] section; the fields that belong there are disabled.
    bool hasConfiguration = true;
    InfoOffers offers; // to begin with
    // To be called again and again while the window stands, a few milliseconds each, until it gives the offers.
    std::function<std::optional<InfoOffers>()> gather;
    // cmdApply with what the fields hold. True closes the dialog; false leaves it open, after a message.
    std::function<bool(const AircraftInfo& entered)> accept;
    // The window is about to be closed without cmdApply or cmdCancel. False leaves it open.
    std::function<bool(const AircraftInfo& entered)> mayClose;
};

class UserDialogs {
  public:
    virtual ~UserDialogs() = default;

    // Plain text, lines separated by CR LF. A Yes/No box cannot be closed unanswered; OK/Cancel takes Escape
    // as Cancel.
    virtual CheckedAnswer ShowMessage(const std::string& text, MessageButtons buttons, MessageIcon icon,
                                      const MessageOptions& options) = 0;
    // One line of text (shown as dots when secret); none when the user cancelled.
    virtual std::optional<std::string> AskText(const std::string& prompt, bool isSecret) = 0;
    // An existing zip archive; the directory to open on may be "". None when the user cancelled.
    virtual std::optional<std::string> ChooseZipFile(const std::string& title, const std::string& directory) = 0;

    // frmMultipleCfg: the row picked, from 0. A dialog that was closed picks nothing.
    virtual std::optional<int> ChooseConfiguration(const std::vector<ConfigurationRow>& rows) = 0;
    // frmInstallStatus and frmImportStatus, both captioned "Gauge Crosscheck".
    virtual void ShowInstallStatus(const std::string& text) = 0;
    virtual void ShowImportStatus(const std::string& text) = 0;
    // These come back when the dialog is closed, in whatever way.
    virtual void ShowRename(const RenameForm& form) = 0;
    virtual void ShowUnusedGauges(const UnusedGaugesForm& form) = 0;
    virtual void ShowMSFSImport(const ImportForm& form) = 0;
    virtual void ShowInfo(const InfoForm& form) = 0;

    void Tell(const std::string& text, MessageIcon icon = MessageIcon::None) {
        ShowMessage(text, MessageButtons::Ok, icon, {});
    }
    bool AskYesNo(const std::string& text, MessageIcon icon = MessageIcon::None) {
        return ShowMessage(text, MessageButtons::YesNo, icon, {}).answer == Answer::Yes;
    }
    bool AskOkCancel(const std::string& text, MessageIcon icon = MessageIcon::None) {
        return ShowMessage(text, MessageButtons::OkCancel, icon, {}).answer == Answer::Ok;
    }
};

// Thrown from deep inside a command to end the program; only the outermost handler of a command catches it.
struct ProgramEnd {};

} // namespace korvadex
