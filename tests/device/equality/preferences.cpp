// Preferences files of every kind of value and of every form that property lists have.
#include "device/equality/requests.h"

#include <array>
#include <cstdio>
#include <cstdlib>

namespace velmoranth::equality {
namespace {

std::string xml(const std::string& entries) {
    return R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
)" + entries +
           "</plist>\n";
}

std::string xmlDictionary(const std::string& entries) {
    return xml("<dict>\n" + entries + "</dict>\n");
}

const std::string kThemes =
    "<key>ActiveThemes</key><array><string>First</string><string>Second</string>"
    "<string>Third Theme</string></array>\n";
const std::string kShadow =
    "<key>dynamicShadow</key><true/><key>opacityVal</key><real>0.5</real>"
    "<key>xAxisVal</key><integer>-2</integer><key>yAxisVal</key><real>1.25</real>"
    "<key>shadowRadiusVal</key><real>3</real><key>shadowWidthVal</key><integer>60</integer>"
    "<key>shadowHeightVal</key><real>61.5</real>\n";

std::string on(const std::string& key) {
    return "<key>" + key + "</key><true/>\n";
}

// A dictionary in the binary form: booleans, integers, reals, texts, an array of several kinds,
// bytes and a date.
constexpr char kBinary[] =
    "\x62\x70\x6c\x69\x73\x74\x30\x30\xdd\x01\x02\x03\x04\x05\x06\x07\x08\x09\x0a\x0b\x0c\x0d"
    "\x0e\x14\x13\x13\x15\x16\x17\x13\x18\x19\x1a\x1b\x1c\x5c\x41\x63\x74\x69\x76\x65\x54\x68"
    "\x65\x6d\x65\x73\x5d\x64\x79\x6e\x61\x6d\x69\x63\x53\x68\x61\x64\x6f\x77\x56\x65\x6e\x61"
    "\x62\x6c\x65\x5d\x65\x6e\x61\x62\x6c\x65\x4c\x6f\x67\x67\x69\x6e\x67\x54\x6e\x6f\x74\x65"
    "\x5a\x6f\x70\x61\x63\x69\x74\x79\x56\x61\x6c\x5c\x72\x65\x6d\x6f\x76\x65\x4c\x61\x62\x65"
    "\x6c\x73\x5f\x10\x0f\x73\x68\x61\x64\x6f\x77\x48\x65\x69\x67\x68\x74\x56\x61\x6c\x5f\x10"
    "\x0f\x73\x68\x61\x64\x6f\x77\x52\x61\x64\x69\x75\x73\x56\x61\x6c\x5e\x73\x68\x61\x64\x6f"
    "\x77\x57\x69\x64\x74\x68\x56\x61\x6c\x55\x73\x69\x6e\x63\x65\x58\x78\x41\x78\x69\x73\x56"
    "\x61\x6c\x58\x79\x41\x78\x69\x73\x56\x61\x6c\xa5\x0f\x10\x11\x12\x13\x55\x46\x69\x72\x73"
    "\x74\x10\x07\x5b\x54\x68\x69\x72\x64\x20\x54\x68\x65\x6d\x65\x23\x3f\xf8\x00\x00\x00\x00"
    "\x00\x00\x09\x10\x01\x42\x00\x01\x23\x3f\xd0\x00\x00\x00\x00\x00\x00\x10\x00\x23\x40\x04"
    "\x00\x00\x00\x00\x00\x00\x54\x36\x30\x2e\x35\x33\x41\xc0\xee\x30\xd2\x80\x00\x00\x13\xff"
    "\xff\xff\xff\xff\xff\xff\xfd\x13\x40\x00\x00\x00\x00\x00\x00\x00\x00\x08\x00\x23\x00\x30"
    "\x00\x3e\x00\x45\x00\x53\x00\x58\x00\x63\x00\x70\x00\x82\x00\x94\x00\xa3\x00\xa9\x00\xb2"
    "\x00\xbb\x00\xc1\x00\xc7\x00\xc9\x00\xd5\x00\xde\x00\xdf\x00\xe1\x00\xe4\x00\xed\x00\xef"
    "\x00\xf8\x00\xfd\x01\x06\x01\x0f\x00\x00\x00\x00\x00\x00\x02\x01\x00\x00\x00\x00\x00\x00"
    "\x00\x1d\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x01\x18";

const std::string& binary() {
    static const std::string kBytes(kBinary, sizeof kBinary - 1);
    return kBytes;
}

struct File {
    const char* name;
    std::string contents;
};

const std::vector<File>& files() {
    static const std::vector<File> kFiles{
        {"all", xmlDictionary(on("enable") + on("enableLogging") + kShadow + kThemes)},
        {"quiet", xmlDictionary(on("enable") + kThemes)},
        {"off", xmlDictionary(on("enableLogging") + kThemes)},
        {"one theme",
         xmlDictionary(on("enable") + on("enableLogging") +
                       "<key>ActiveThemes</key><array><string>Second</string></array>\n")},
        {"effects", xmlDictionary(on("enable") + on("enableLogging") + on("enableIconMask") +
                                  on("enableOverlay") + on("enableShadow") + kShadow + kThemes)},
        {"dump",
         xmlDictionary(on("enable") + on("enableLogging") + on("enableImageDump") + kThemes)},
        {"removals",
         xmlDictionary(on("enable") + on("removeLabels") + on("removeIconBadges") + kThemes)},
        {"texts", xmlDictionary("<key>enable</key><string>YES</string>"
                                "<key>enableLogging</key><string> \t1</string>"
                                "<key>removeLabels</key><string>no</string>"
                                "<key>removeIconBadges</key><string>true</string>"
                                "<key>dynamicShadow</key><string>-01</string>"
                                "<key>opacityVal</key><string>0.75</string>"
                                "<key>xAxisVal</key><string>12px</string>"
                                "<key>yAxisVal</key><string>-.5e1</string>"
                                "<key>shadowRadiusVal</key><string>wide</string>"
                                "<key>shadowWidthVal</key><string>0x10</string>"
                                "<key>shadowHeightVal</key><string></string>\n" +
                                kThemes)},
        {"numbers", xmlDictionary("<key>enable</key><integer>1</integer>"
                                  "<key>enableLogging</key><real>0.5</real>"
                                  "<key>removeLabels</key><integer>-7</integer>"
                                  "<key>removeIconBadges</key><real>0.0</real>"
                                  "<key>dynamicShadow</key><integer>256</integer>"
                                  "<key>opacityVal</key><integer>1</integer>"
                                  "<key>xAxisVal</key><true/>"
                                  "<key>yAxisVal</key><integer>9223372036854775807</integer>"
                                  "<key>shadowRadiusVal</key><real>1e-3</real>"
                                  "<key>shadowWidthVal</key><real>0.1</real>"
                                  "<key>shadowHeightVal</key><false/>\n" +
                                  kThemes)},
        {"wrong kinds", xmlDictionary("<key>enable</key><true/>"
                                      "<key>enableLogging</key><array><true/></array>"
                                      "<key>removeLabels</key><dict/>"
                                      "<key>dynamicShadow</key><true/>"
                                      "<key>opacityVal</key><data>AAEC</data>"
                                      "<key>xAxisVal</key><date>2019-01-02T03:04:05Z</date>"
                                      "<key>yAxisVal</key><array/>"
                                      "<key>ActiveThemes</key><string>First</string>\n")},
        {"odd themes",
         xmlDictionary(on("enable") + on("enableLogging") +
                       "<key>ActiveThemes</key><array><integer>7</integer><true/><real>1.5</real>"
                       "<date>2019-01-02T03:04:05Z</date><data>AAEC</data><string></string>"
                       "<array><string>First</string></array><dict><key>a</key><string>b</string>"
                       "</dict><string>Über &amp; %@</string><real>100000000000000000000</real>"
                       "<string>../Themes/Second</string></array>\n")},
        {"no themes",
         xmlDictionary(on("enable") + on("enableLogging") + "<key>ActiveThemes</key><array/>\n")},
        {"missing keys", xmlDictionary("")},
        {"binary", binary()},
        {"old style",
         "{ enable = YES; enableLogging = \"1\"; dynamicShadow = 1; opacityVal = \"0.5\";\n"
         "  /* themes */ ActiveThemes = (First, \"Third Theme\", 7, <00 0102>);\n"
         "  xAxisVal = 3; \"removeLabels\" = NO; // none\n  note = { a = (b, c); }; }\n"},
        {"strings file", "enable = YES;\nenableLogging = YES;\n\"removeLabels\" = \"1\";\n"},
        {"array on top", xml("<array><string>enable</string></array>\n")},
        {"text on top", xml("<string>enable</string>\n")},
        {"broken", "<plist><dict><key>enable</key><true/>"},
        {"broken old style", "{ enable = YES; enableLogging = "},
        {"cut binary", binary().substr(0, binary().size() - 20)},
        {"no property list", "What is this?\n"},
        {"empty", ""},
    };
    return kFiles;
}

}  // namespace

const std::string& preferencesNamed(std::string_view name) {
    for (const File& file : files()) {
        if (file.name == name) {
            return file.contents;
        }
    }
    std::fprintf(stderr, "no preferences %.*s\n", static_cast<int>(name.size()), name.data());
    std::abort();
}

std::span<const Text> preferencesOfEveryKind() {
    static const std::vector<Text> kNames = [] {
        std::vector<Text> names;
        for (const File& file : files()) {
            names.push_back(file.name);
        }
        return names;
    }();
    return kNames;
}

}  // namespace velmoranth::equality
