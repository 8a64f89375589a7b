#include "cli/device_options.h"

#include "cli/choice.h"
#include "cli/messages.h"
#include "cli/nearest.h"
#include "cli/numbers.h"
#include "cli/preferences.h"
#include "desktop/dates/dates.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <ctime>
#include <ranges>
#include <regex>
#include <tuple>

namespace velmoranth::cli {

using desktop::Result;

namespace {

// What every picture shows unless asked otherwise, so that none changes from day to day.
constexpr const char* kUsualDay = "2019-09-10";

// "en", "de_AT", "zh-Hant-TW": two or three letters, then parts of letters and digits.
bool isLocaleName(const std::string& text) {
    static const std::regex kForm("[A-Za-z]{2,3}([_-][A-Za-z0-9]{2,})*");
    constexpr std::size_t kLongest = 60;
    return text.size() <= kLongest && std::regex_match(text, kForm);
}

// Of the known ones: what differs the least, of equal ones one of the same region, then the
// shortest.
std::string nearestLocale(const std::string& text) {
    const auto regionOf = [](const std::string& name) {
        const std::size_t place = name.find_last_of("_-");
        return place == std::string::npos ? std::string() : name.substr(place + 1);
    };
    const std::string region = regionOf(text);
    const std::vector<std::string> known = desktop::knownLocales();
    return *std::ranges::min_element(known, {}, [&](const std::string& name) {
        return std::tuple(editDistance(name, text), regionOf(name) != region, name.size());
    });
}

// The number behind --ios.
Result<int> readSystem(const std::string& text) {
    const auto major = parseInteger(text, 0, 1000);
    if (!major || !simulator::systemVersion(*major)) {
        static constexpr std::array<std::string_view, 2> kSystems{"12", "13"};
        return misuse(notAmong("--ios", kSystems, text));
    }
    return *major;
}

// A device as the other options have it.
Result<simulator::DeviceConfiguration> readDevice(const Arguments& arguments,
                                                  const std::string& name, int system) {
    auto device = simulator::deviceConfiguration(name, system);
    if (!device) {
        const auto names =
            std::views::transform(simulator::deviceModels(), &simulator::DeviceModel::name);
        return misuse(notAmong("--device", names, name));
    }
    if (const auto locale = arguments.value("--locale")) {
        if (!isLocaleName(*locale)) {
            return misuse("--locale takes a name like en_US or de, not " + inQuotes(*locale));
        }
        if (!desktop::isKnownLocale(*locale)) {
            return misuse("--locale takes a language that is known, and " + inQuotes(*locale) +
                          " is none" +
                          suggestion(*locale, desktop::knownLocales(),
                                     "; the nearest that is known is " + nearestLocale(*locale)));
        }
        device->locale = *locale;
    }
    const auto date = parseDate(arguments.value("--date").value_or(kUsualDay));
    if (!date) {
        return tl::unexpected(date.error());
    }
    device->date = *date;
    const std::string held = arguments.value("--orientation").value_or("portrait");
    if (held != "portrait" && held != "landscape") {
        static constexpr std::array<std::string_view, 2> kWays{"portrait", "landscape"};
        return misuse(notAmong("--orientation", kWays, held));
    }
    if (held == "landscape") {
        if (auto turned = simulator::turnToLandscape(*device); !turned) {
            return tl::unexpected(std::move(turned.error()));
        }
    }
    device->exactFiles = arguments.has("--exact-files");
    return device;
}

}  // namespace

Result<simulator::DeviceConfiguration> readDeviceOptions(const Arguments& arguments) {
    const auto system = readSystem(arguments.value("--ios").value_or("13"));
    return system ? readDevice(arguments, arguments.value("--device").value_or("phone"), *system)
                  : Result<simulator::DeviceConfiguration>(tl::unexpected(system.error()));
}

std::vector<std::string> listed(const std::string& text) {
    std::vector<std::string> words;
    std::size_t begin = 0;
    for (std::size_t end = text.find(','); end != std::string::npos; end = text.find(',', begin)) {
        words.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    words.push_back(text.substr(begin));
    return words;
}

Result<std::vector<NamedDevice>> readEveryDevice(const Arguments& arguments,
                                                 const std::string& usualSystems) {
    std::string names;
    for (const simulator::DeviceModel& model : simulator::deviceModels()) {
        names.append(names.empty() ? "" : ",").append(model.name);
    }
    std::vector<NamedDevice> devices;
    for (const std::string& text : listed(arguments.value("--ios").value_or(usualSystems))) {
        const auto system = readSystem(text);
        if (!system) {
            return tl::unexpected(system.error());
        }
        for (const std::string& name : listed(arguments.value("--device").value_or(names))) {
            auto device = readDevice(arguments, name, *system);
            if (!device) {
                return tl::unexpected(std::move(device.error()));
            }
            devices.push_back({name, std::move(*device)});
        }
    }
    return devices;
}

Result<platform::Dictionary> readSettingOptions(const Arguments& arguments,
                                                std::string_view whereListed) {
    platform::Dictionary settings;
    for (const std::string& assignment : arguments.values("--set")) {
        auto set = parseAssignment(assignment, {"--set", "--set ", whereListed, kPreviewSettings});
        if (!set) {
            return tl::unexpected(std::move(set.error()));
        }
        settings.insert_or_assign(std::string(set->setting->key), std::move(set->value));
    }
    return settings;
}

Result<platform::Date> parseDate(const std::string& text) {
    if (text == "now") {
        return platform::Date{static_cast<double>(std::time(nullptr)) - desktop::kReferenceDate};
    }
    static const std::regex kForm("\\d{4}-\\d\\d-\\d\\d(T\\d\\d:\\d\\d(:\\d\\d)?)?");
    constexpr std::array kFormats{"%Y-%m-%d", "%Y-%m-%dT%H:%M", "%Y-%m-%dT%H:%M:%S"};
    const std::string complaint =
        "--date takes a date like 2019-12-24 or 2019-12-24T18:30, or now, not " + inQuotes(text);
    std::tm wanted{};
    const auto reads = [&](const char* format) {
        wanted = std::tm();
        // 9:41 is the time that devices show in pictures.
        wanted.tm_hour = 9;
        wanted.tm_min = 41;
        const char* const end = ::strptime(text.c_str(), format, &wanted);
        return end != nullptr && *end == '\0';
    };
    if (!std::regex_match(text, kForm) || std::ranges::none_of(kFormats, reads)) {
        return misuse(complaint);
    }
    wanted.tm_isdst = -1;
    std::tm real = wanted;
    const std::time_t time = std::mktime(&real);
    // A day that there is not comes back as another one; an hour that a change to summer time
    // leaves out may.
    if (real.tm_mon != wanted.tm_mon || real.tm_mday != wanted.tm_mday ||
        real.tm_min != wanted.tm_min) {
        return misuse(complaint);
    }
    return platform::Date{static_cast<double>(time) - desktop::kReferenceDate};
}

platform::Date usualDate() {
    return *parseDate(kUsualDay);
}

}  // namespace velmoranth::cli
