#include "tests/support/road_ground.h"

#include "platform/text_file.h"
#include "platform/windows_path.h"

#include <regex>

namespace korvadex::test {

namespace {

std::string OneLine(const std::string& text) {
    static const std::regex lineEnds(R"((\r\n)+)");
    return std::regex_replace(text, lineEnds, " | ");
}

bool IsRefusal(const Said& said) {
    return said.buttons == MessageButtons::Ok &&
           (said.icon == MessageIcon::Exclamation || said.icon == MessageIcon::Critical);
}

std::string BytesOf(TemporaryDrive& drive, const std::string& path) {
    const auto bytes = ReadBytes(drive.Files(), path);
    return bytes ? *bytes : "(none)";
}

} // namespace

bool IsJunk(const std::string& path) {
    const std::string name = FoldCase(LastPathComponent(path));
    return name == "thumbs.db" || name == "desktop.ini" || name == ".ds_store" || name == ".directory" ||
           FoldCase(path).find("__macosx\\") != std::string::npos;
}

std::string PlainName(const std::string& path) {
    std::string name = FoldCase(LastPathComponent(path));
    const std::size_t dot = std::min(name.rfind('.'), name.size()), open = name.rfind('(', dot);
    if (open != name.npos && name.find_first_not_of("0123456789", open + 1) + 1 == dot && name[dot - 1] == ')')
        name.erase(open, dot - open);
    return name;
}

Contents ContentsOf(const FileTree& tree) {
    Contents contents;
    for (const auto& [path, bytes] : tree)
        if (!path.ends_with('\\') && !IsJunk(path) && !PlainName(path).starts_with("kx_"))
            contents.emplace(PlainName(path), bytes);
    return contents;
}

std::string SimName(std::string name) {
    std::ranges::replace(name, ' ', '_');
    return name;
}

CheckedAnswer AutomaticUser::ShowMessage(const std::string& text, MessageButtons buttons, MessageIcon icon,
                                         const MessageOptions&) {
    const bool yes = isRandom ? !dice.OneIn(3) : saysYes;
    Answer answer = Answer::Ok;
    if (buttons == MessageButtons::YesNo)
        answer = yes ? Answer::Yes : Answer::No;
    else if (buttons == MessageButtons::OkCancel && !yes)
        answer = Answer::Cancel;
    Take({text, answer, buttons, icon});
    return {answer, false};
}

void AutomaticUser::ShowMSFSImport(const ImportForm& form) {
    const auto found = std::ranges::find(form.names, toImport);
    if (found != form.names.end())
        form.accept(static_cast<int>(found - form.names.begin()));
}

RoadGround::RoadGround(std::string roadTitle, std::uint64_t diceSeed, Mood roadMood, RoadReport& roadReport)
    : title(std::move(roadTitle)), dice(diceSeed), pool(MakeGaugePool(dice)), mood(roadMood), report(roadReport),
      user(dice, [this](const Said& said) { Judge(said); }) {
    drive.Fill("", "Staging\\, Hangar\\Jets\\, Hangar\\Props\\, FS\\aircraft\\, FS\\gauges\\, Packed\\");
    drive.Put("App\\kx.ini", "ALTLOCATION0=Main\r\nALTSTAGINGDIR0=" + drive.At("Staging\\") +
                                 "\r\nALTHANGARDIR0=" + drive.At("Hangar\\") + "\r\nALTMSFSDIR0=" + drive.At("FS\\") +
                                 "\r\nALTFIRSTPACKAGE0=\r\nLOCATIONLAST=0\r\nLOCATIONLASTZIP=\r\n");
    std::string panel = "[Window00]\r\nfile=stock.bmp\r\n";
    for (const auto& [name, versions] : pool) {
        if (dice.OneIn(3) && stock.insert("gauges\\" + name).second)
            panel += "gauge0" + std::to_string(stock.size()) + "=" + name.substr(0, name.find('.')) + ",1,2\r\n";
        if (dice.OneIn(3))
            PutInSimulator("FS\\gauges\\" + name, dice.Of(versions));
    }
    drive.Put("FS\\aircraft\\Stock_1\\panel\\panel.cfg", panel);
    drive.Fill("FS", "aircraft\\Stock_1\\aircraft.cfg=[fltsim.0], sound\\stock.wav=RIFF, modules\\stock.dll=MZ");
    if (dice.OneIn(2))
        drive.MakeDirectory("FS\\effects");
    simulator = drive.States("FS");
    simulatorTree = drive.Tree("FS");
    user.isRandom = mood == Mood::Random;
    Start();
    ++report.roads;
}

void RoadGround::Start() {
    program = std::make_unique<Program>(drive.Files(), launcher, user, dialogs, converter, form, drive.At("App\\"), "");
    program->Start();
}

void RoadGround::StartAgainSometimes() {
    if (!dice.OneIn(4))
        return;
    program->Shutdown();
    form.ends = 0;
    Start();
}

void RoadGround::PutInSimulator(const std::string& path, const std::string& bytes) {
    drive.Put(path, bytes);
    if (dice.OneIn(5))
        static_cast<void>(drive.Files().SetReadOnly(drive.At(path), true));
}

bool RoadGround::MayStay(const std::string& path) const {
    return path.starts_with("effects\\") || path.starts_with("sound\\") || path.starts_with("modules\\") ||
           stock.contains(path);
}

void RoadGround::ExpectSimulator() {
    const auto now = drive.States("FS");
    for (const auto& [path, state] : simulator)
        if (const auto there = now.find(path); there == now.end() || there->second != state)
            Violation("the simulator has lost or changed " + path);
    for (const auto& [path, bytes] : drive.Tree("FS"))
        if (!simulatorTree.contains(path) && !MayStay(path))
            Violation("the simulator still has " + path);
}

// --- commands

void RoadGround::Do(const std::string& what, const std::function<void()>& command) {
    step = what;
    user.said.clear();
    ++report.commands;
    command();
    if (form.ends > 0) {
        Violation("the program ended");
        throw RoadEnd{};
    }
    for (const auto& [path, bytes] : drive.Tree())
        if (path.find(ScratchDirectoryName) != std::string::npos)
            Violation("scratch is left: " + path);
    CheckKept();
}

void RoadGround::Attempt(const std::string& what, const std::function<void()>& command,
                         const std::function<bool()>& isDone, bool asksFirst) {
    const Contents keptBefore = kept;
    const FileTree before = drive.Tree();
    const bool wasRandom = user.isRandom;
    user.saysYes = mood != Mood::Hesitant;
    Do(what, command);
    const bool isDeclined = !user.said.empty() && std::ranges::all_of(user.said, [](const Said& said) {
        return said.answer == Answer::No || said.answer == Answer::Cancel;
    });
    if (asksFirst && isDeclined && drive.Tree() != before)
        Violation("every answer was No, and yet something changed");
    user.saysYes = true;
    if (!isDone()) {
        user.isRandom = false;
        kept = keptBefore;
        Do(what, command);
    }
    user.isRandom = wasRandom;
    if (!isDone())
        Violation("was not done");
}

void RoadGround::Violation(const std::string& text) {
    report.violations.push_back(title + ": " + step + ": " + OneLine(text));
}

void RoadGround::ExpectHolds(const std::string& where, const Contents& there, const Contents& wanted) {
    for (const auto& content : wanted)
        if (!there.contains(content) && !sacrificed.contains(content))
            Violation(where + " lacks " + content.first);
}

void RoadGround::CheckKept() {
    if (isPacked)
        return;
    Contents there = ContentsOf(drive.Tree("Staging"));
    there.merge(ContentsOf(drive.Tree("Hangar")));
    ExpectHolds("without a question the disk", there, kept);
    std::erase_if(kept, [&](const auto& content) { return !there.contains(content); }); // said once
}

// --- what is said

void RoadGround::Judge(const Said& said) {
    Count(said);
    const auto has = [&](std::string_view part) { return said.text.find(part) != std::string::npos; };
    if (user.said.size() > 200) {
        Violation("asks without an end: " + said.text);
        throw RoadEnd{};
    }
    if (has("A duplicate filename condition")) {
        JudgeDuplicate(said);
    } else if (has("file is missing from the package")) {
        for (const auto& [path, bytes] : drive.Tree("Staging"))
            if (has("The " + FoldCase(LastPathComponent(path)) + " file is missing"))
                Violation("says that a file is missing, but there is " + path);
    } else if (has("aren't used by the panel")) {
        JudgeLeftBehind(said.text);
    } else if (has("Would you like to clear the Staging area")) {
        const Contents staged = ContentsOf(drive.Tree("Staging")),
                       copy = ContentsOf(drive.Tree("Hangar\\" + category + "\\" + program->View().packageName));
        ExpectHolds("the package", copy, staged);
        ExpectHolds("what is in the package: Staging", staged, copy);
    } else if (has("Would you like to remove this package from the hangar?")) {
        ExpectHolds("Staging", ContentsOf(drive.Tree("Staging")), ContentsOf(unpacked));
    } else if (has("Found another ZIP file")) {
        isNestedWanted = said.answer == Answer::Yes;
    } else if (has("files that this package doesn't have") && !isByHand) {
        Violation("asks about a loss where there is none: " + said.text);
    } else if (IsRefusal(said) && !has("Package name already exists in ") && !has("has to be chosen first")) {
        Violation("refuses: " + said.text);
    }
}

void RoadGround::JudgeDuplicate(const Said& said) {
    static const std::regex path(R"(\r\n([A-Z]:\\[^\r\n]*)  \(Size: )");
    std::vector<std::string> paths;
    for (std::sregex_iterator hit(said.text.begin(), said.text.end(), path), end; hit != end; ++hit)
        paths.push_back((*hit)[1]);
    if (paths.size() != 2 || IsJunk(paths[0]) || BytesOf(drive, paths[0]) == BytesOf(drive, paths[1]))
        return Violation("a needless question: " + said.text);
    const std::string& loser = paths[said.answer == Answer::Yes ? 1 : 0];
    sacrificed.emplace(PlainName(loser), BytesOf(drive, loser));
    hasLostPanel = hasLostPanel || PlainName(loser) == "panel.cfg";
}

void RoadGround::JudgeLeftBehind(const std::string& text) {
    for (const auto& [path, bytes] : drive.Tree("Staging")) {
        const std::string name = LastPathComponent(path);
        if (text.find("\r\n" + name) == std::string::npos)
            continue;
        sacrificed.emplace(PlainName(path), bytes);
        if (!hasLostPanel && addon.gauges[chosen].contains(FoldCase(name.substr(0, name.find('.')))))
            Violation("leaves behind a gauge that the panel names: " + name);
    }
}

// Texts that differ by names and numbers alone are one.
void RoadGround::Count(const Said& said) {
    static const std::regex path(R"([A-Z]:\\[^\r\n]*?(?=\r|$|  |\)| exists| holds))"), number(R"(\d+)");
    std::string text = said.text;
    for (const std::string& name : {package, SimName(package), addon.archiveName, addon.name, SimName(addon.name)})
        for (std::size_t at; !name.empty() && (at = text.find(name)) != text.npos;)
            text.replace(at, name.size(), "<name>");
    text = OneLine(std::regex_replace(std::regex_replace(text, path, "<path>"), number, "#"));
    for (const std::string_view list :
         {"Possible problem ...", "doesn't have ...", "used by the panel of this package"})
        if (const std::size_t at = text.find(list); at != text.npos)
            text.resize(at + list.size());
    if (said.buttons == MessageButtons::Ok)
        ++(IsRefusal(said) ? report.refusals : report.notices)[text];
    else if (said.answer == Answer::Yes || said.answer == Answer::Ok)
        ++report.questions[text].yes;
    else
        ++report.questions[text].no;
}

} // namespace korvadex::test
