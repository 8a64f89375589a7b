#include "makers/packing/control.h"

#include "makers/conversion/names.h"

#include <algorithm>
#include <array>
#include <optional>

namespace velmoranth::makers {

using desktop::Problem;
using desktop::Result;

namespace {

// What every theme's package has unless its maker says otherwise.
constexpr std::string_view kArchitecture = "iphoneos-arm";
constexpr std::string_view kSection = "Themes";
constexpr std::string_view kPriority = "optional";
constexpr std::string_view kFirstVersion = "1.0";
constexpr std::string_view kNobody = "Unknown";
// Either package of the engine draws it.
constexpr std::string_view kDepends = "com.qor.velmoranth | com.qor.velmoranth.arm64e";

constexpr std::size_t kLongestLine = 1024;

bool isLowerOrDigit(char letter) {
    return (letter >= 'a' && letter <= 'z') || (letter >= '0' && letter <= '9');
}

bool isDigit(char letter) {
    return letter >= '0' && letter <= '9';
}

bool isAlphanumeric(char letter) {
    return isLowerOrDigit(letter) || (letter >= 'A' && letter <= 'Z');
}

// A line that an installer reads as one field: not empty, no control characters.
bool isLine(std::string_view value) {
    return !value.empty() && value.size() <= kLongestLine && value.front() != ' ' &&
           value.back() != ' ' && std::ranges::none_of(value, [](char letter) {
               return static_cast<unsigned char>(letter) < 0x20 || letter == 0x7F;
           });
}

std::string_view identifierFault(std::string_view value) {
    const bool isRight =
        value.size() >= 2 && isLine(value) && isLowerOrDigit(value.front()) &&
        std::ranges::all_of(value, [](char letter) {
            return isLowerOrDigit(letter) || letter == '+' || letter == '-' || letter == '.';
        });
    return isRight ? "" : "two or more of a-z, 0-9, +, - and ., a letter or digit first";
}

// As dpkg has it: [epoch:]upstream[-revision], an upstream version begins with a digit.
std::string_view versionFault(std::string_view value) {
    constexpr std::string_view kRight =
        "a digit first, then letters, digits, +, -, ~ and .: 1.0 or 2.1-3";
    const std::size_t colon = value.find(':');
    if (colon != std::string_view::npos) {
        const std::string_view epoch = value.substr(0, colon);
        if (epoch.empty() || epoch.size() > 9 || !std::ranges::all_of(epoch, isDigit)) {
            return kRight;
        }
        value.remove_prefix(colon + 1);
    }
    const bool isRight = isLine(value) && isDigit(value.front()) && value.back() != '-' &&
                         std::ranges::all_of(value, [](char letter) {
                             return isAlphanumeric(letter) || letter == '.' || letter == '+' ||
                                    letter == '-' || letter == '~';
                         });
    return isRight ? "" : kRight;
}

std::string_view lineFault(std::string_view value) {
    return isLine(value) ? "" : "one line, neither empty nor longer than 1,024 bytes";
}

std::string_view wordFault(std::string_view value) {
    const bool isRight =
        isLine(value) && std::ranges::none_of(value, [](char letter) { return letter == ' '; });
    return isRight ? "" : "one word";
}

std::string_view addressFault(std::string_view value) {
    const bool isRight =
        wordFault(value).empty() && (value.starts_with("https://") || value.starts_with("http://"));
    return isRight ? "" : "an address that begins with https:// or http://";
}

std::string_view yesNoFault(std::string_view value) {
    return value == "yes" || value == "no" ? "" : "yes or no";
}

// The first line is the summary; those below it are written as the installer's format wants them.
std::string_view descriptionFault(std::string_view value) {
    const bool isRight = isLine(value.substr(0, value.find('\n'))) && value.size() <= 16384 &&
                         std::ranges::none_of(value, [](char letter) {
                             return letter != '\n' && static_cast<unsigned char>(letter) < 0x20;
                         });
    return isRight ? "" : "text whose first line sums up the rest";
}

constexpr std::array<ControlField, 22> kFields{{
    {"Package", identifierFault, "CFBundleIdentifier"},
    {"Name", lineFault, "PackageName CFBundleDisplayName CFBundleName"},
    {"Version", versionFault, "CFBundleShortVersionString CFBundleVersion"},
    {"Architecture", wordFault},
    {"Section", lineFault},
    {"Priority", wordFault},
    {"Maintainer", lineFault},
    {"Author", lineFault},
    {"Sponsor", lineFault},
    {"Depends", lineFault},
    {"Pre-Depends", lineFault},
    {"Recommends", lineFault},
    {"Suggests", lineFault},
    {"Conflicts", lineFault},
    {"Breaks", lineFault},
    {"Replaces", lineFault},
    {"Provides", lineFault},
    {"Tag", lineFault},
    {"Icon", lineFault},
    {"Depiction", addressFault},
    {"Homepage", addressFault},
    {"Essential", yesNoFault},
}};

constexpr ControlField kDescription{"Description", descriptionFault};

constexpr auto kAllFields = [] {
    std::array<ControlField, kFields.size() + 1> fields{};
    std::ranges::copy(kFields, fields.begin());
    fields.back() = kDescription;  // its lines end the file
    return fields;
}();

// "Sunset Paper.theme" is "Sunset Paper".
std::string withoutEnding(std::string name) {
    constexpr std::string_view kEnding = ".theme";
    if (name.size() > kEnding.size() && lowerCase(name).ends_with(kEnding)) {
        name.resize(name.size() - kEnding.size());
    }
    return name;
}

// "themes.sunset-paper".
std::string identifierOf(const std::string& name) {
    std::string identifier = "themes.";
    for (const char letter : lowerCase(name)) {
        if (isLowerOrDigit(letter)) {
            identifier += letter;
        } else if (identifier.back() != '-' && identifier.back() != '.') {
            identifier += '-';
        }
    }
    identifier.erase(identifier.find_last_not_of('-') + 1);
    return identifier;
}

std::optional<std::string> textIn(const platform::Dictionary& info, std::string_view key) {
    const auto found = info.find(std::string(key));
    const auto* const text = found == info.end() ? nullptr : found->second.as<std::string>();
    return text == nullptr || text->empty() ? std::nullopt : std::optional(*text);
}

std::optional<std::string> saidBy(const platform::Dictionary& info, const ControlField& field) {
    if (auto own = textIn(info, field.name)) {
        return own;
    }
    std::string_view keys = field.keys;
    while (!keys.empty()) {
        const std::string_view key = keys.substr(0, keys.find(' '));
        keys.remove_prefix(std::min(key.size() + 1, keys.size()));
        if (auto value = textIn(info, key)) {
            return value;
        }
    }
    return std::nullopt;
}

std::string otherwise(std::string_view field, const ControlValues& before,
                      const std::string& name) {
    if (field == "Package") {
        return identifierOf(name);
    }
    if (field == "Name") {
        return name;
    }
    if (field == "Description") {
        return valueOf(before, "Name") + ", a theme for the home screen";
    }

    struct Usual {
        std::string_view field;
        std::string_view value;
    };

    static constexpr std::array<Usual, 6> kUsual{{{"Version", kFirstVersion},
                                                  {"Architecture", kArchitecture},
                                                  {"Section", kSection},
                                                  {"Priority", kPriority},
                                                  {"Maintainer", kNobody},
                                                  {"Depends", kDepends}}};
    const auto usual = std::ranges::find(kUsual, field, &Usual::field);
    return usual == kUsual.end() ? std::string() : std::string(usual->value);
}

tl::unexpected<Problem> wrongField(std::string_view field, const std::string& value,
                                   std::string_view right, bool isFromTheme) {
    Problem problem{"the package's " + std::string(field) + " cannot be \"" + value +
                    "\": it takes " + std::string(right)};
    if (isFromTheme) {
        problem.path = "Info.plist";
    }
    return tl::unexpected(std::move(problem));
}

}  // namespace

std::span<const ControlField> controlFields() {
    return kAllFields;
}

const ControlField* controlField(std::string_view name) {
    const auto found = std::ranges::find_if(kAllFields, [&](const ControlField& field) {
        return lowerCase(field.name) == lowerCase(name);
    });
    return found == kAllFields.end() ? nullptr : &*found;
}

std::string valueOf(const ControlValues& control, std::string_view field) {
    const auto found =
        std::ranges::find(control, field, &std::pair<std::string, std::string>::first);
    return found == control.end() ? std::string() : found->second;
}

Result<ControlValues> controlOf(const ControlValues& given, const platform::Dictionary& info,
                                const std::string& themeName) {
    const std::string name = withoutEnding(themeName);
    ControlValues control;
    for (const ControlField& field : kAllFields) {
        const std::string asGiven = valueOf(given, field.name);
        const auto said = asGiven.empty() ? saidBy(info, field) : std::nullopt;
        std::string value = !asGiven.empty() ? asGiven
                            : said           ? *said
                                             : otherwise(field.name, control, name);
        // Who makes a theme looks after its package.
        if (field.name == "Maintainer" && asGiven.empty() && !said) {
            const std::string author = valueOf(given, "Author");
            value =
                !author.empty() ? author : saidBy(info, *controlField("Author")).value_or(value);
        }
        if (value.empty()) {
            continue;
        }
        if (const std::string_view right = field.whyWrong(value); !right.empty()) {
            return wrongField(field.name, value, right, said.has_value());
        }
        control.emplace_back(field.name, std::move(value));
    }
    return control;
}

std::string textOf(const ControlValues& control, std::uint64_t installedKibibytes) {
    std::string text;
    for (const auto& [field, value] : control) {
        if (field == kDescription.name) {
            text += "Installed-Size: " + std::to_string(installedKibibytes) + "\n";
        }
        text += field + ": ";
        for (std::size_t at = 0; at <= value.size();) {
            const std::size_t end = std::min(value.find('\n', at), value.size());
            const std::string line = value.substr(at, end - at);
            // A line below the first is indented, and an empty one is a full stop.
            text += at == 0 ? line : line.empty() ? std::string(" .") : " " + line;
            text += '\n';
            at = end + 1;
        }
    }
    return text;
}

}  // namespace velmoranth::makers
