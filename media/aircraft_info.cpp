#include "media/aircraft_info.h"

#include "media/info_offers.h"
#include "media/info_text.h"
#include "package/aircraft_cfg.h"
#include "package/config_text.h"
#include "package/file_primitives.h"
#include "package/scratch.h"
#include "platform/windows_path.h"

#include <algorithm>

namespace korvadex {

namespace {

// How long reading for the combo boxes keeps the window from painting.
constexpr std::chrono::milliseconds GatherTime{8};

// CR LF between lines, however they came.
std::string WithCrLf(std::string_view text) {
    std::string lines;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isPair = text.substr(i).starts_with("\r\n");
        if (text[i] == '\r' || text[i] == '\n')
            lines += "\r\n";
        else
            lines += text[i];
        i += isPair;
    }
    return lines;
}

// As it reads back from the file: without blanks at the ends.
AircraftInfo Cleaned(AircraftInfo info) {
    const auto clean = [&](const auto& fields) {
        for (const InfoField& field : fields) {
            if (!field.text)
                continue;
            std::string& text = info.*field.text;
            text = field.hasLines ? std::string(Trim(WithCrLf(text))) : std::string(TrimBlanks(text));
        }
    };
    clean(ConfigurationFields);
    clean(GeneralFields);
    return info;
}

// The first letter that the file cannot hold; "" when there is none.
std::string FirstForeignLetter(const ConfigText& config, const std::string& text) {
    for (std::size_t at = 0; at < text.size();) {
        std::size_t end = at + 1;
        while (end < text.size() && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80)
            ++end;
        std::string letter = text.substr(at, end - at);
        if (!config.Encode(letter))
            return letter;
        at = end;
    }
    return "";
}

bool HasControlLetter(const std::string& text, bool hasLines) {
    return std::any_of(text.begin(), text.end(), [&](char letter) {
        const bool isAllowed = letter == '\t' || (hasLines && (letter == '\r' || letter == '\n'));
        return static_cast<unsigned char>(letter) < ' ' && !isAllowed;
    });
}

// What keeps the text from being written so that it reads back as typed; "" when nothing does.
std::string Objection(const ConfigText& config, const InfoField& field, const std::string& text) {
    const std::string name(field.name);
    if (HasControlLetter(text, field.hasLines))
        return "The " + name + " has a line break or another character that cannot be kept in one line.";
    if (const std::string letter = FirstForeignLetter(config, text); !letter.empty())
        return "The " + name + " has a character that cannot be kept in aircraft.cfg:  " + letter;
    if (std::string back = text; field.hasLines && EscapeConfigText(EscapeConfigText(back, false), true) != text)
        return "The " + name +
               " has a \\ before one of n, t, s and /.  In aircraft.cfg these two stand for something else.";
    return "";
}

class InfoEditor {
  public:
    InfoEditor(CommandContext& command, std::string subject, std::string configPath, const ConfigInfo& found)
        : context(command), aircraft(std::move(subject)), path(std::move(configPath)), opened(found),
          search(command.files, command.locations) {}

    InfoForm Form() {
        return {.aircraft = aircraft,
                .info = opened.info,
                .hasConfiguration = opened.hasConfiguration,
                .offers = search.Offers(),
                .gather = [this]() -> std::optional<InfoOffers> {
                    if (search.Continue(GatherTime))
                        return std::nullopt;
                    return search.Offers();
                },
                .accept = [this](const AircraftInfo& entered) { return Accept(Cleaned(entered)); },
                .mayClose =
                    [this](const AircraftInfo& entered) {
                        return Cleaned(entered) == opened.info ||
                               context.user.AskYesNo(
                                   "What you have changed was not applied.  Do you want to discard it?");
                    }};
    }

  private:
    bool Accept(const AircraftInfo& entered) {
        if (entered == opened.info)
            return true;
        const auto before = ReadConfigText(context.files, path);
        if (!before)
            return Refuse("The file " + path + " could not be read again (" + DescribeFault(before.status()) +
                          ").  Nothing was written.  Please put it back and choose 'Apply' again.");
        if (!CanBeWritten(*before, entered))
            return false;
        const ConfigInfo now = ReadAircraftInfo(*before);
        if (now.hasConfiguration != opened.hasConfiguration || !before->IsText())
            return Refuse("The sections of " + path +
                          " were changed by another program.  Nothing was written.  "
                          "Please choose 'Cancel' and open this window again.");
        if (now.info != opened.info &&
            !context.user.AskYesNo("This information was changed by another program in " + path +
                                   ".  Do you want to replace it with what you have entered?"))
            return false;
        return Write(*before, entered);
    }

    bool CanBeWritten(const ConfigText& config, const AircraftInfo& entered) {
        const auto check = [&](const auto& fields) {
            for (const InfoField& field : fields) {
                if (!field.text || entered.*field.text == opened.info.*field.text)
                    continue;
                const std::string objection = Objection(config, field, entered.*field.text);
                if (!objection.empty())
                    return Refuse(objection + "  Please change it.");
            }
            return true;
        };
        return check(ConfigurationFields) && check(GeneralFields);
    }

    bool Write(const ConfigText& before, const AircraftInfo& entered) {
        const std::string bytes = WithAircraftInfo(before, entered);
        if (bytes == before.Bytes())
            return true;
        const Status status = RewriteBytes(context.files, context.locations, path, bytes);
        return status ||
               Refuse("The file " + path + " could not be written (" + DescribeFault(status) +
                      ").  It was left as it is.  "
                      "Please make sure that it can be written and that the disk has room, and choose 'Apply' again.");
    }

    bool Refuse(const std::string& text) {
        context.user.Tell(text, MessageIcon::Exclamation);
        return false;
    }

    CommandContext& context;
    const std::string aircraft, path;
    const ConfigInfo opened;
    InfoOfferSearch search;
};

} // namespace

void EditAircraftInfo(CommandContext& context, const LoadedPackage& package) {
    const auto tell = [&](const std::string& text) { context.user.Tell(text, MessageIcon::Exclamation); };
    if (!context.files.Info(context.locations.MsfsDir + "fs2002.exe"))
        return tell("This information is for FS2002 only.");
    if (package.isChoiceOpen)
        return tell(DescribeOpenChoice(package) + "  Please press F5.");
    const std::string path = package.FindComponentFile("aircraft.cfg");
    const auto text = path.empty() ? Result<ConfigText>(ConfigText()) : ReadConfigText(context.files, path);
    if (!text)
        return tell("The file " + path + " could not be read (" + DescribeFault(text.status()) + ").");
    if (text->lines.empty())
        return tell("Aircraft configuration file not found.");
    if (!text->IsText())
        return tell("The file " + path +
                    " is no plain text, so it cannot be changed here.  "
                    "Please open it in an editor and save it as plain text (ANSI).");
    if (IsInstalled(context.files, context.locations, package.ref))
        context.user.Tell(
            "This package is currently installed in Flight Simulator.  "
            "Any changes to this information will not have an effect until the package is reinstalled with Korvadex.",
            MessageIcon::Information);
    const std::string name = package.isStaging ? "Staging" : package.ref.name;
    InfoEditor editor(context, name + "  -  " + package.aircraftTitle, path, ReadAircraftInfo(*text));
    context.user.ShowInfo(editor.Form());
}

} // namespace korvadex
