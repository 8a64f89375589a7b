#include "cli/calendar_report.h"

#include "cli/messages.h"
#include "desktop/plist/property_lists.h"
#include "desktop/text/fonts.h"
#include "platform/foundation.h"

#include "makers/conversion/calendar_list.h"
#include "makers/conversion/repairs.h"
#include "record/operations.h"
#include "record/words.h"
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

namespace velmoranth::cli {

using platform::Dictionary;
using platform::PropertyList;
using record::Entry;
using record::EntryKind;
using record::messageOf;

namespace {

// How the icon's lines in the log begin: about the list, once with its contents, and about values
// of a wrong kind.
constexpr std::string_view kLoggedList = "ThemePlistDict: ";
constexpr std::string_view kLoggedValue = "Velmoranth calendar icon: ";

// A text of the icon, and where the list says how it is written.
struct TextRow {
    std::string_view key;
    std::string_view name;
};

// In the order in which the icon makes them.
constexpr std::array kTexts{TextRow{"CalendarIconDateSettings", "date"},
                            TextRow{"CalendarIconDaySettings", "weekday"}};

// What was done with a text, in a record's words; "" for what was not.
struct WrittenText {
    std::string font;  // the name that was asked for
    bool hasFont = false;
    std::string textColor;
    std::string shadowColor;
};

// The place of the entry that has read the calendar's list; the end without one.
std::span<const Entry>::iterator readListIn(std::span<const Entry> entries) {
    return std::ranges::adjacent_find(entries, [](const Entry& a, const Entry& b) {
        return a.kind == EntryKind::found &&
               a.message == messageOf("PropertyLists", "dictionaryWithContentsOfFile") &&
               b.kind == EntryKind::log && b.subject.starts_with(kLoggedList);
    });
}

std::vector<WrittenText> textsIn(std::span<const Entry> entries) {
    std::vector<WrittenText> texts;
    for (const Entry& entry : entries) {
        if (entry.message == messageOf("Views", "labelWithFrame")) {
            texts.emplace_back();
        }
        if (texts.empty() || entry.arguments.empty()) {
            continue;
        }
        const std::string& argument = entry.arguments.front();
        if (entry.message == messageOf("Fonts", "fontWithNameSize")) {
            texts.back().font = argument;
            texts.back().hasFont = entry.answer != record::kNil;
        } else if (entry.message == messageOf("Label", "setTextColor")) {
            texts.back().textColor = argument;
        } else if (entry.message == messageOf("Label", "setShadowColor")) {
            texts.back().shadowColor = argument;
        }
    }
    return texts;
}

// Whether the digits of "#RRGGBB" are in what the list says, in whatever notation.
bool isSaid(const std::string& color, std::string said) {
    std::ranges::transform(said, said.begin(), [](char c) {
        return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    });
    constexpr std::size_t kDigits = 6;
    return said.find(color.substr(1, kDigits)) != std::string::npos;
}

// About one of its colours; "" when it shows as the list says.
std::string colorFinding(const TextRow& row, const Dictionary& settings, std::string_view key,
                         const std::string& shownColor) {
    const PropertyList* const value = platform::objectForKey(settings, key);
    const auto* const said = value == nullptr ? nullptr : value->as<std::string>();
    if (said == nullptr || shownColor.empty() || isSaid(shownColor, *said)) {
        return {};
    }
    return fmt::format(
        "the {}'s {} {} is not understood and shows as {}; write six hexadecimal digits, as in "
        "FF8000",
        row.name, key, inQuotes(*said), shownColor);
}

// About its size; "" when it is drawn as the list says. The icon itself complains of what is
// neither a number nor a text.
std::string sizeFinding(const TextRow& row, const Dictionary& settings) {
    const PropertyList* const value = platform::objectForKey(settings, "FontSize");
    if (value == nullptr || platform::floatValue(value) > 0) {
        return {};
    }
    const auto* const text = value->as<std::string>();
    if (text == nullptr && value->as<std::int64_t>() == nullptr && value->as<double>() == nullptr) {
        return {};
    }
    return fmt::format(
        "the {}'s FontSize {} is drawn in {} points", row.name,
        text == nullptr ? record::words(platform::floatValue(value)) : inQuotes(*text),
        desktop::kSystemFontSize);
}

void addFindings(std::vector<CalendarFinding>& findings, const TextRow& row,
                 const Dictionary& settings, const WrittenText& text) {
    const auto add = [&](CalendarFault fault, std::string line) {
        findings.push_back({fault, std::move(line), {}});
    };
    if (text.font == record::kNil) {
        add(CalendarFault::font,
            fmt::format("{} names no font, so the {} is written in the device's own", row.key,
                        row.name));
    } else if (!text.hasFont) {
        add(CalendarFault::font,
            fmt::format("the {}'s font {} is none of the device's", row.name, shown(text.font)));
    }
    if (std::string finding = sizeFinding(row, settings); !finding.empty()) {
        add(CalendarFault::value, std::move(finding));
    }
    for (const auto& [key, color] :
         {std::pair(std::string_view("TextColor"), text.textColor),
          std::pair(std::string_view("ShadowColor"), text.shadowColor)}) {
        if (std::string finding = colorFinding(row, settings, key, color); !finding.empty()) {
            add(CalendarFault::color, std::move(finding));
        }
    }
}

const Dictionary* settingsIn(const Dictionary& list, const TextRow& row) {
    const PropertyList* const value = platform::objectForKey(list, row.key);
    return value == nullptr ? nullptr : value->as<Dictionary>();
}

bool isAboutCalendar(const PropertyList& contents) {
    const auto* const list = contents.as<Dictionary>();
    return list != nullptr && std::ranges::any_of(kTexts, [list](const TextRow& row) {
               return list->contains(row.key);
           });
}

// About a list that says nothing of the calendar and stands before others.
std::string bareFinding(const DeviceOfRun& device, const AskedFile& file) {
    std::string finding =
        "there is nothing about the calendar in it, so the texts stand at the icon's top edge in "
        "the device's own font";
    for (const std::string& theme : device.themes) {
        const auto other =
            desktop::readPropertyList(*device.root, "/Library/Themes/" + theme + "/" + file.name);
        if (theme != file.theme && other && isAboutCalendar(*other)) {
            return finding + "; what " + shown(theme + "/" + file.name) + " says is not read";
        }
    }
    return finding;
}

// What a conversion does about it; "" for what it leaves.
std::string cureOf(CalendarFault fault) {
    using enum makers::Repair;
    const makers::Repair repair =
        fault == CalendarFault::bare || fault == CalendarFault::textMissing ? missingSettings
        : fault == CalendarFault::overlap                                   ? textPlace
        : fault == CalendarFault::unmasked                                  ? calendarMask
                                                                            : none;
    return repair == none ? "" : fmt::format("; velmoranth convert {}", makers::rowOf(repair).does);
}

std::vector<CalendarFinding> findingsIn(const Dictionary& list, std::span<const Entry> entries) {
    std::vector<CalendarFinding> findings;
    for (const Entry& entry : entries) {
        if (entry.kind == EntryKind::log && entry.subject.starts_with(kLoggedValue)) {
            findings.push_back(
                {CalendarFault::value, shown(entry.subject.substr(kLoggedValue.size())), {}});
        }
    }
    const std::vector<WrittenText> texts = textsIn(entries);
    for (std::size_t i = 0; i < std::min(texts.size(), kTexts.size()); ++i) {
        if (const Dictionary* const settings = settingsIn(list, kTexts.at(i))) {
            addFindings(findings, kTexts.at(i), *settings, texts[i]);
        } else if (!list.contains(kTexts.at(i).key)) {
            findings.push_back({CalendarFault::textMissing,
                                fmt::format("{} is missing, so the {} stands at the icon's top "
                                            "edge in the device's own font",
                                            kTexts.at(i).key, kTexts.at(i).name),
                                {}});
        }
    }
    if (makers::writesDayAcrossWeekday(list)) {
        findings.push_back({CalendarFault::overlap,
                            fmt::format("{} has no TextYoffset, so the day is written across the "
                                        "weekday",
                                        kTexts.front().key),
                            {}});
    }
    return findings;
}

// About a mask that cuts other icons.
std::optional<std::string> maskFinding(const DeviceOfRun& device, const AskedFile& list,
                                       const AskedFile& mask) {
    const auto contents = desktop::readPropertyList(*device.root, list.path);
    const auto* const keys = contents ? contents->as<Dictionary>() : nullptr;
    if (keys == nullptr || !makers::saysNothingOfMask(*keys)) {
        return {};
    }
    return fmt::format(
        "IB-MaskIcons is missing, so {} does not cut the calendar{}",
        shown(mask.theme + "/" + mask.name),
        mask.theme == list.theme ? cureOf(CalendarFault::unmasked) : "; add the key, yes or no");
}

// The theme's list that the icon was drawn by.
std::optional<AskedFile> listOf(const record::Record& record) {
    const std::span<const Entry> entries(record);
    const auto read = readListIn(entries);
    if (read == entries.end()) {
        return {};
    }
    const std::vector<AskedFile> files = askedFiles(record);
    const auto file = std::ranges::find(files, read->subject, &AskedFile::path);
    return file == files.end() ? std::nullopt : std::optional(*file);
}

}  // namespace

std::vector<CalendarFinding> calendarFaults(const DeviceOfRun& device,
                                            const record::Record& record) {
    const std::span<const Entry> entries(record);
    const auto read = readListIn(entries);
    const std::optional<AskedFile> file = listOf(record);
    if (!file) {
        return {};  // the device's own
    }
    const auto contents = desktop::readPropertyList(*device.root, file->path);
    if (!contents) {
        return {};  // it has changed meanwhile
    }
    // The icon is drawn for each place where it shows; once will do.
    const std::span<const Entry> rest(std::next(read), entries.end());
    const std::span<const Entry> once(rest.begin(), readListIn(rest));
    std::vector<CalendarFinding> findings;
    if (isAboutCalendar(*contents)) {
        findings = findingsIn(*contents->as<Dictionary>(), once);
    } else {
        findings.push_back({CalendarFault::bare, bareFinding(device, *file), {}});
    }
    for (CalendarFinding& finding : findings) {
        finding.file = file->theme + "/" + file->name;
    }
    return findings;
}

std::vector<std::string> calendarFindings(const DeviceOfRun& device, const record::Record& record,
                                          const AskedFile* mask) {
    std::vector<std::string> lines;
    for (const CalendarFinding& finding : calendarFaults(device, record)) {
        lines.push_back(shown(finding.file) + ": " + finding.text + cureOf(finding.fault));
    }
    const std::optional<AskedFile> list = mask == nullptr ? std::nullopt : listOf(record);
    if (const auto finding = list ? maskFinding(device, *list, *mask) : std::nullopt) {
        lines.push_back(shown(list->theme + "/" + list->name) + ": " + *finding);
    }
    return lines;
}

}  // namespace velmoranth::cli
