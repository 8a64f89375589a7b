#include "desktop/text/phone_faces.h"

#include <cmath>
#include <cstdlib>
#include <map>
#include <sstream>
#include <tuple>
#include <utility>

namespace velmoranth::desktop {

namespace {

enum class Systems { both, only12, from13 };

// Which installed family stands for one of the phone's.
constexpr const char* kSystem = "Inter";          // has every weight, and italics
constexpr const char* kSans = "Liberation Sans";  // has the widths of Arial and Helvetica
constexpr const char* kNarrow = "Liberation Sans Narrow";
constexpr const char* kWide = "DejaVu Sans";        // of the same origin as Verdana's look
constexpr const char* kSerif = "Liberation Serif";  // has the widths of Times New Roman
constexpr const char* kSlab = "DejaVu Serif";
constexpr const char* kTypewriter = "Liberation Mono";  // has the widths of Courier New
constexpr const char* kCode = "DejaVu Sans Mono";       // what Menlo was made from
constexpr const char* kRound = "Quicksand";
constexpr const char* kHand = "Comic Neue";
constexpr const char* kScript = "Dancing Script";
constexpr const char* kSymbols = "DejaVu Sans";

// A family: every suffix on the base is a PostScript name, "." is the base alone. Faces for scripts
// other than Latin are drawn in the system face; its fall-backs have their letters.
struct FamilyRow {
    const char* family;
    const char* base;
    const char* suffixes;
    const char* drawnIn;
    Systems systems = Systems::both;
};

constexpr const char* kAvenirNext =
    "-Regular -Italic -UltraLight -UltraLightItalic -Medium -MediumItalic -DemiBold "
    "-DemiBoldItalic -Bold -BoldItalic -Heavy -HeavyItalic";
constexpr const char* kFour = ". -Italic -Bold -BoldItalic";
constexpr const char* kPingFang = "-Ultralight -Thin -Light -Regular -Medium -Semibold";

constexpr FamilyRow kFamilies[] = {
    {"Academy Engraved LET", "AcademyEngravedLet", "Plain", kSerif},
    {"Al Nile", "AlNile", ". -Bold", kSystem},
    {"American Typewriter", "AmericanTypewriter",
     ". -Light -Semibold -Bold -Condensed -CondensedLight -CondensedBold", kSlab},
    {"Apple Color Emoji", "AppleColorEmoji", ".", kSymbols},
    {"Apple SD Gothic Neo", "AppleSDGothicNeo",
     "-Thin -UltraLight -Light -Regular -Medium -SemiBold -Bold", kSystem},
    {"Apple Symbols", "AppleSymbols", ".", kSymbols, Systems::from13},
    {"Arial", "Arial", "MT -BoldMT -ItalicMT -BoldItalicMT", kSans},
    {"Arial Hebrew", "ArialHebrew", ". -Light -Bold", kSans},
    {"Arial Rounded MT Bold", "ArialRoundedMT", "Bold", kRound},
    {"Avenir", "Avenir",
     "-Book -Roman -Light -Medium -Heavy -Black -Oblique -BookOblique -LightOblique "
     "-MediumOblique -HeavyOblique -BlackOblique",
     kSystem},
    {"Avenir Next", "AvenirNext", kAvenirNext, kSystem},
    {"Avenir Next Condensed", "AvenirNextCondensed", kAvenirNext, kNarrow},
    {"Baskerville", "Baskerville", ". -Italic -SemiBold -SemiBoldItalic -Bold -BoldItalic", kSerif},
    {"Bodoni 72", "BodoniSvtyTwoITCTT", "-Book -BookIta -Bold", kSerif},
    {"Bodoni 72 Oldstyle", "BodoniSvtyTwoOSITCTT", "-Book -BookIt -Bold", kSerif},
    {"Bodoni 72 Smallcaps", "BodoniSvtyTwoSCITCTT", "-Book", kSerif},
    {"Bodoni Ornaments", "BodoniOrnamentsITCTT", ".", kSymbols},
    {"Bradley Hand", "BradleyHandITCTT", "-Bold", kHand},
    {"Chalkboard SE", "ChalkboardSE", "-Light -Regular -Bold", kHand},
    {"Chalkduster", "Chalkduster", ".", kHand},
    {"Charter", "Charter", "-Roman -Italic -Bold -BoldItalic -Black -BlackItalic", kSerif},
    {"Cochin", "Cochin", kFour, kSerif},
    {"Copperplate", "Copperplate", ". -Light -Bold", kSerif},
    {"Courier", "Courier", ". -Oblique -Bold -BoldOblique", kTypewriter},
    {"Courier New", "CourierNewPS", "MT -BoldMT -ItalicMT -BoldItalicMT", kTypewriter},
    {"Damascus", "Damascus", ". Light Medium SemiBold Bold", kSystem},
    {"Devanagari Sangam MN", "DevanagariSangamMN", ". -Bold", kSystem},
    {"Didot", "Didot", ". -Italic -Bold", kSerif},
    {"DIN Alternate", "DINAlternate", "-Bold", kSystem},
    {"DIN Condensed", "DINCondensed", "-Bold", kNarrow},
    {"Euphemia UCAS", "EuphemiaUCAS", ". -Italic -Bold", kSystem},
    {"Farah", "Farah", ".", kSystem},
    {"Futura", "Futura", "-Medium -MediumItalic -Bold -CondensedMedium -CondensedExtraBold",
     kSystem},
    {"Galvji", "Galvji", ". -Bold", kSystem, Systems::from13},
    {"Geeza Pro", "GeezaPro", ". -Bold", kSystem},
    {"Georgia", "Georgia", kFour, kSerif},
    {"Gill Sans", "GillSans",
     ". -Italic -Light -LightItalic -SemiBold -SemiBoldItalic -Bold -BoldItalic -UltraBold",
     kSystem},
    {"Gujarati Sangam MN", "GujaratiSangamMN", ". -Bold", kSystem, Systems::only12},
    {"Gurmukhi MN", "GurmukhiMN", ". -Bold", kSystem, Systems::only12},
    {"Helvetica", "Helvetica", ". -Oblique -Bold -BoldOblique", kSans},
    {"Helvetica", "Helvetica", "-Light -LightOblique", kSystem},  // the stand-in has no light one
    {"Helvetica Neue", "HelveticaNeue",
     ". -Italic -UltraLight -UltraLightItalic -Thin -ThinItalic -Light -LightItalic -Medium "
     "-MediumItalic -Bold -BoldItalic -CondensedBold -CondensedBlack",
     kSystem},
    {"Hiragino Maru Gothic ProN", "HiraMaruProN", "-W4", kRound},
    {"Hiragino Mincho ProN", "HiraMinProN", "-W3 -W6", kSerif},
    {"Hiragino Sans", "HiraginoSans", "-W3 -W6", kSystem},
    // -W8 in 13.0 alone, -W7 since 13.1; a system is known by its major version here.
    {"Hiragino Sans", "HiraginoSans", "-W7 -W8", kSystem, Systems::from13},
    {"Hoefler Text", "HoeflerText", "-Regular -Italic -Black -BlackItalic", kSerif},
    {"Kailasa", "Kailasa", ". -Bold", kSystem},
    {"Kannada Sangam MN", "KannadaSangamMN", ". -Bold", kSystem, Systems::only12},
    {"Kefa", "Kefa", "-Regular", kSlab},
    {"Khmer Sangam MN", "KhmerSangamMN", ".", kSystem},
    {"Kohinoor Bangla", "KohinoorBangla", "-Light -Regular -Semibold", kSystem},
    {"Kohinoor Devanagari", "KohinoorDevanagari", "-Light -Regular -Semibold", kSystem},
    {"Kohinoor Gujarati", "KohinoorGujarati", "-Light -Regular -Bold", kSystem, Systems::from13},
    {"Kohinoor Telugu", "KohinoorTelugu", "-Light -Regular -Medium", kSystem},
    {"Lao Sangam MN", "LaoSangamMN", ".", kSystem},
    {"Malayalam Sangam MN", "MalayalamSangamMN", ". -Bold", kSystem},
    {"Marker Felt", "MarkerFelt", "-Thin -Wide", kHand},
    {"Menlo", "Menlo", "-Regular -Italic -Bold -BoldItalic", kCode},
    {"Mishafi", "DiwanMishafi", ".", kSystem},
    {"Mukta Mahee", "MuktaMahee", "-Light -Regular -Bold", kSystem, Systems::from13},
    {"Myanmar Sangam MN", "MyanmarSangamMN", ". -Bold", kSystem},
    {"Noteworthy", "Noteworthy", "-Light -Bold", kHand},
    {"Noto Nastaliq Urdu", "NotoNastaliqUrdu", ".", kSystem},
    {"Noto Nastaliq Urdu", "NotoNastaliqUrdu", "-Bold", kSystem, Systems::from13},
    {"Noto Sans Chakma", "NotoSansChakma", "-Regular", kSystem, Systems::only12},
    {"Noto Sans Kannada", "NotoSansKannada", "-Light -Regular -Bold", kSystem, Systems::from13},
    {"Noto Sans Myanmar", "NotoSansMyanmar", "-Light -Regular -Bold", kSystem, Systems::from13},
    {"Noto Sans Oriya", "NotoSansOriya", ". -Bold", kSystem, Systems::from13},
    {"Optima", "Optima", "-Regular -Italic -Bold -BoldItalic -ExtraBlack", kSystem},
    {"Oriya Sangam MN", "OriyaSangamMN", ". -Bold", kSystem, Systems::only12},
    {"Palatino", "Palatino", "-Roman -Italic -Bold -BoldItalic", kSerif},
    {"Papyrus", "Papyrus", ". -Condensed", kHand},
    {"Party LET", "PartyLet", "Plain", kScript},
    {"PingFang HK", "PingFangHK", kPingFang, kSystem},
    {"PingFang SC", "PingFangSC", kPingFang, kSystem},
    {"PingFang TC", "PingFangTC", kPingFang, kSystem},
    {"Rockwell", "Rockwell", "-Regular -Italic -Bold -BoldItalic", kSlab},
    {"Savoye LET", "SavoyeLet", "Plain", kScript},
    {"Sinhala Sangam MN", "SinhalaSangamMN", ". -Bold", kSystem},
    {"Snell Roundhand", "SnellRoundhand", ". -Bold -Black", kScript},
    {"Symbol", "Symbol", ".", kSymbols},
    {"Tamil Sangam MN", "TamilSangamMN", ". -Bold", kSystem},
    {"Thonburi", "Thonburi", ". -Light -Bold", kSystem},
    {"Times New Roman", "TimesNewRomanPS", "MT -BoldMT -ItalicMT -BoldItalicMT", kSerif},
    {"Trebuchet MS", "Trebuchet", "MS MS-Italic MS-Bold -BoldItalic", kSystem},
    {"Verdana", "Verdana", kFour, kWide},
    {"Zapf Dingbats", "ZapfDingbatsITC", ".", kSymbols},
    {"Zapfino", "Zapfino", ".", kScript},
};

enum class Kind { weight, italic, condensed };

// A word of a style. Ultralight is the thinnest of the phone's weights, thinner than thin.
struct StyleWord {
    const char* spelling;
    const char* words;
    Kind kind = Kind::weight;
    FontWeight weight = FontWeight::regular;
};

// One that begins another comes after it.
constexpr StyleWord kStyleWords[] = {
    {"UltraLight", "Ultra Light", Kind::weight, FontWeight::thin},
    {"Ultralight", "Ultralight", Kind::weight, FontWeight::thin},
    {"UltraBold", "Ultra Bold", Kind::weight, FontWeight::black},
    {"ExtraBold", "Extra Bold", Kind::weight, FontWeight::heavy},
    {"ExtraBlack", "Extra Black", Kind::weight, FontWeight::black},
    {"DemiBold", "Demi Bold", Kind::weight, FontWeight::semibold},
    {"SemiBold", "Semi Bold", Kind::weight, FontWeight::semibold},
    {"Semibold", "Semibold", Kind::weight, FontWeight::semibold},
    {"Thin", "Thin", Kind::weight, FontWeight::extraLight},
    {"Light", "Light", Kind::weight, FontWeight::light},
    {"Book", "Book"},
    {"Roman", "Roman"},
    {"Regular", "Regular"},
    {"Plain", "Plain"},
    {"Medium", "Medium", Kind::weight, FontWeight::medium},
    {"Bold", "Bold", Kind::weight, FontWeight::bold},
    {"Heavy", "Heavy", Kind::weight, FontWeight::heavy},
    {"Black", "Black", Kind::weight, FontWeight::black},
    {"Wide", "Wide", Kind::weight, FontWeight::bold},
    {"W3", "W3"},
    {"W4", "W4"},
    {"W6", "W6", Kind::weight, FontWeight::semibold},
    {"W7", "W7", Kind::weight, FontWeight::bold},
    {"W8", "W8", Kind::weight, FontWeight::heavy},
    {"Italic", "Italic", Kind::italic},
    {"Oblique", "Oblique", Kind::italic},
    {"Ita", "Italic", Kind::italic},
    {"It", "Italic", Kind::italic},
    {"Condensed", "Condensed", Kind::condensed},
};

// What is left of a suffix when it is stripped of what is no style: "MS-Italic", "-BoldMT".
std::string_view styleOfSuffix(std::string_view suffix) {
    if (suffix.starts_with("MS")) {
        suffix.remove_prefix(2);
    }
    if (suffix.starts_with('-') || suffix == ".") {
        suffix.remove_prefix(1);
    }
    if (suffix.ends_with("MT")) {
        suffix.remove_suffix(2);
    }
    return suffix;
}

bool hasFamily(const FamilyRow& row, bool is13) {
    return row.systems == Systems::both || (row.systems == Systems::from13) == is13;
}

// A system's faces, and which of them a name means.
struct System {
    std::vector<PhoneFace> faces;
    std::map<std::string, std::size_t, std::less<>> names;

    explicit System(bool is13) {
        std::map<std::string, std::size_t, std::less<>> otherNames;
        for (const FamilyRow& row : kFamilies) {
            std::istringstream suffixes(row.suffixes);
            for (std::string suffix; hasFamily(row, is13) && suffixes >> suffix;) {
                add(row, suffix, otherNames);
            }
        }
        for (std::size_t i = 0; i < faces.size(); ++i) {
            std::size_t& mostRegular = otherNames.try_emplace(faces[i].family, i).first->second;
            if (distance(faces[i]) < distance(faces[mostRegular])) {
                mostRegular = i;
            }
        }
        names.merge(otherNames);  // a PostScript name comes first
    }

  private:
    // From what a family's name alone means.
    static std::tuple<bool, bool, int> distance(const PhoneFace& face) {
        return {face.italic, face.condensed,
                std::abs(static_cast<int>(face.weight) - static_cast<int>(FontWeight::regular))};
    }

    void add(const FamilyRow& row, const std::string& suffix,
             std::map<std::string, std::size_t, std::less<>>& fullNames) {
        const std::string_view styleText = styleOfSuffix(suffix);
        const FaceStyle style = faceStyleOf(styleText).value_or(FaceStyle{});
        const std::size_t index = faces.size();
        // Of the families that have a condensed face only those without serifs have a stand-in.
        const bool narrow = style.condensed && (row.drawnIn == std::string_view(kSystem) ||
                                                row.drawnIn == std::string_view(kSans));
        faces.push_back({.postScriptName = row.base + (suffix == "." ? "" : suffix),
                         .family = row.family,
                         .drawnIn = narrow ? kNarrow : row.drawnIn,
                         .weight = style.weight,
                         .italic = style.italic,
                         .condensed = style.condensed || row.drawnIn == std::string_view(kNarrow)});
        names.emplace(faces.back().postScriptName, index);
        const std::string start = std::string(row.family) + ' ';
        fullNames.emplace(start + (styleText.empty() ? "Regular" : style.words), index);
        fullNames.emplace(start + (styleText.empty() ? "Regular" : style.spelling), index);
    }
};

const System& systemOf(int version) {
    static const System kSystems[] = {System(false), System(true)};
    return kSystems[version >= 13 ? 1 : 0];
}

}  // namespace

std::optional<FaceStyle> faceStyleOf(std::string_view style) {
    FaceStyle result;
    while (!style.empty()) {
        const StyleWord* found = nullptr;
        for (const StyleWord& word : kStyleWords) {
            if (found == nullptr && style.starts_with(word.spelling)) {
                found = &word;
            }
        }
        if (found == nullptr) {
            return std::nullopt;
        }
        const char* const gap = result.words.empty() ? "" : " ";
        result.words.append(gap).append(found->words);
        result.spelling.append(gap).append(found->kind == Kind::italic ? found->words
                                                                       : found->spelling);
        result.italic |= found->kind == Kind::italic;
        result.condensed |= found->kind == Kind::condensed;
        if (found->kind == Kind::weight) {
            result.weight = found->weight;
        }
        style.remove_prefix(std::string_view(found->spelling).size());
    }
    return result;
}

const std::vector<PhoneFace>& phoneFaces(int systemVersion) {
    return systemOf(systemVersion).faces;
}

const PhoneFace* phoneFaceNamed(std::string_view name, int systemVersion) {
    const System& system = systemOf(systemVersion);
    const auto found = system.names.find(name);
    return found == system.names.end() ? nullptr : &system.faces[found->second];
}

}  // namespace velmoranth::desktop
