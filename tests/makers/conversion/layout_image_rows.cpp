#include "tests/makers/conversion/layout_rows.h"
#include "tests/makers/conversion/theme_fixture.h"
#include "tests/support/places.h"

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <utility>

namespace velmoranth::makers {
namespace {

const std::string kMasks = "Bundles/com.apple.mobileicons.framework/AppIconMask";
const std::string kHome = "Bundles/com.apple.springboard/";
const std::string kSettings = "Bundles/com.apple.Preferences/";
const std::string kCalendar = "IconBundles/com.apple.mobilecal-large.png";

std::string drawing(std::size_t side, const Color& color) {
    return png(side, side, color, kBlack);
}

// Black that shows and a clear corner that cuts, as makers have it; and as it is read.
std::string alphaMask(std::size_t side) {
    return png(side, side, kBlack, kClear);
}

std::string grayMask(std::size_t side) {
    std::vector<std::uint8_t> samples(side * side);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        samples[i] = i % side < side / 4 && i / side < side / 4 ? 255 : 0;
    }
    const auto bytes = desktop::encodeGrayPng(samples, side, side);
    return {bytes.begin(), bytes.end()};
}

std::string listOf(const std::string& entries, const std::string& behind = "") {
    return "<plist version=\"1.0\"><dict>" + entries + "</dict></plist>\n" + behind;
}

std::string textEntry(const std::string& key, const std::string& value) {
    return "<key>" + key + "</key><string>" + value + "</string>";
}

std::string numberEntry(const std::string& key, double value) {
    return "<key>" + key + "</key><real>" + std::to_string(value) + "</real>";
}

std::string dictionaryEntry(const std::string& key, const std::string& entries) {
    return "<key>" + key + "</key><dict>" + entries + "</dict>";
}

// Both texts of the calendar in colours and at places that nothing else gives them.
std::string datesEntry(const std::string& key = "CalendarIconDateSettings") {
    return dictionaryEntry(key, textEntry("FontName", "HelveticaNeue-Bold") +
                                    numberEntry("FontSize", 30) + numberEntry("TextYoffset", 14) +
                                    textEntry("TextColor", "00FF00"));
}

std::string daysEntry() {
    return dictionaryEntry("CalendarIconDaySettings",
                           textEntry("FontName", "HelveticaNeue") + numberEntry("FontSize", 10) +
                               numberEntry("TextYoffset", 40) + textEntry("TextColor", "FFFF00"));
}

std::string textOf(const platform::Dictionary& list) {
    const auto bytes = desktop::writeXmlPropertyList(platform::PropertyList(list));
    return {bytes.begin(), bytes.end()};
}

// The dates of datesEntry(), and the days that a device has.
std::string listWithInstalledDays() {
    platform::Dictionary list = installedCalendar();
    list.insert_or_assign("CalendarIconDateSettings",
                          platform::Dictionary{{"FontName", "HelveticaNeue-Bold"},
                                               {"FontSize", 30.0},
                                               {"TextYoffset", 14.0},
                                               {"TextColor", "00FF00"}});
    return textOf(list);
}

// A theme with the calendar's icon and this list.
LayoutRow listRow(std::string_view section, const std::string& found, const std::string& byHand) {
    return {.section = section,
            .input = {{kCalendar, drawing(180, kBlue)}, {"Info.plist", found}},
            .byHand = {{kCalendar, drawing(180, kBlue)}, {"Info.plist", byHand}}};
}

}  // namespace

platform::Dictionary installedCalendar() {
    std::ifstream file(std::string(tests::kSourceFolder) +
                           "/layout/var/mobile/Library/VelMoranth/UserSettings/Cal.plist",
                       std::ios::binary);
    const platform::Data bytes{std::istreambuf_iterator<char>(file),
                               std::istreambuf_iterator<char>()};
    const auto list = desktop::parsePropertyList(bytes);
    if (!list || list->as<platform::Dictionary>() == nullptr) {
        throw std::runtime_error("there is no list of the calendar's texts");
    }
    return *list->as<platform::Dictionary>();
}

std::vector<LayoutRow> imageRows() {
    const std::string overlay = png(60, 60, kClear, kGreen);
    const std::string shadow = png(66, 66, kRed, kGreen);
    return {
        {.section = "3 a mask by alpha",
         .input = {{kMasks + "@2x.png", alphaMask(120)},
                   {kMasks + "@3x.png", alphaMask(180)},
                   {kMasks + "@2x~ipad.png", alphaMask(152)},
                   {kMasks + "@2x~iphone.png", alphaMask(120)}},
         .byHand = {{kMasks + ".png", grayMask(180)},
                    {kMasks + "@2x.png", grayMask(120)},
                    {kMasks + "@3x.png", grayMask(180)}}},
        {.section = "3 a plain mask by alpha",
         .input = {{kMasks + ".png", alphaMask(60)}},
         .byHand = {{kMasks + ".png", grayMask(60)}}},
        {.section = "3 a gray mask with a scale",
         .input = {{kMasks + "@2x~ipad.png", grayMask(120)}},
         .byHand = {{kMasks + ".png", grayMask(120)}}},
        {.section = "3 effects with scales",
         .input = {{"AnemoneEffects/iPhoneOverlay@2x.png", overlay},
                   {"AnemoneEffects/iPadOverlay@3x.png", overlay},
                   {"AnemoneEffects/iPhoneShadow@3x.png", shadow},
                   {"AnemoneEffects/iPadShadow~ipad.png", shadow},
                   {"AnemoneEffects/iPhoneUnderlay@2x.png", shadow},
                   {"AnemoneEffects/iPhoneSpringBoard.png", shadow}},
         .byHand = {{"AnemoneEffects/iPhoneOverlay.png", overlay},
                    {"AnemoneEffects/iPadOverlay.png", overlay},
                    {"AnemoneEffects/iPhoneShadow.png", shadow},
                    {"AnemoneEffects/iPadShadow.png", shadow}}},
        {.section = "3 the folders icon",
         .input = {{kHome + "ANEMFolderIconBG@3x~ipad.png", drawing(76, kRed)}},
         .byHand = {{kHome + "ANEMFolderIconBG.png", drawing(76, kRed)}}},
        {.section = "3 the badge",
         .input = {{kHome + "SBBadgeBG~ipad.png", drawing(24, kBlue)}},
         .byHand = {{kHome + "SBBadgeBG.png", drawing(24, kBlue)}}},
        {.section = "3 the dock",
         .input = {{kHome + "SBDockBG.png", drawing(200, kRed)}},
         .byHand = {{kHome + "SBDockBG@2x.png", drawing(200, kRed)}}},
        {.section = "3 page dots of the toolkit",
         .input = {{"UIImages/UIPageIndicatorCurrent@2x.png", drawing(14, kRed)},
                   {"UIImages/UIPageIndicator@2x.png", drawing(14, kBlue)}},
         .byHand = {{kHome + "SBPageDotCurrent.png", drawing(14, kRed)},
                    {kHome + "SBPageDotCurrent@2x.png", drawing(14, kRed)},
                    {kHome + "SBPageDot.png", drawing(14, kBlue)},
                    {kHome + "SBPageDot@2x.png", drawing(14, kBlue)}}},
        {.section = "3 the plate of folders",
         .input = {{"Iconomatic/Folder.png", drawing(60, kGreen)}},
         .byHand = {{"Velmoranth/Folder.png", drawing(60, kGreen)}}},
        {.section = "3 icons of the settings",
         .input = {{"Bundles/com.apple.preferences-framework/WiFi@2x.png", drawing(58, kRed)},
                   {"Bundles/com.apple.preferences-framework/WiFi@3x.png", drawing(87, kRed)},
                   {"Bundles/com.apple.preferences-ui-framework/General.png", drawing(87, kGreen)},
                   {"Bundles/com.apple.preferences/Bluetooth.png", drawing(29, kBlue)},
                   {"Bundles/com.apple.preferences-framework/Sounds.png", drawing(29, kRed)},
                   {"Bundles/com.apple.preferences-ui-framework/Sounds.png", drawing(87, kBlue)}},
         .byHand = {{kSettings + "WiFi@2x.png", drawing(58, kRed)},
                    {kSettings + "WiFi@3x.png", drawing(87, kRed)},
                    {kSettings + "General.png", drawing(87, kGreen)},
                    {kSettings + "Bluetooth.png", drawing(29, kBlue)},
                    {kSettings + "Sounds.png", drawing(87, kBlue)}},
         .screen = simulator::ScreenKind::settings},
        {.section = "3 one clear pixel",
         .input = {{kHome + "SBBadgeBG.png", png(1, kClear)}},
         .byHand = {{kHome + "SBBadgeBG.png", png(1, kClear)}},
         .showsAsItIs = true},
        {.section = "3 sounds and fonts",
         .input = {{"UISounds/lock.caf", "sound"},
                   {"UISounds/lock.mp3", "sound"},
                   {"Fonts/A.ttf", "font"},
                   {"Fonts/B.otf", "font"}},
         .byHand = {{"UISounds/lock.caf", "sound"}},
         .showsAsItIs = true,
         .showsNothing = true},
        {.section = "3 what belongs to no theme",
         .input = {{"Wallpaper~iphone.png", drawing(60, kRed)},
                   {"LockBackground.png", drawing(60, kRed)},
                   {"Icon.png", drawing(60, kRed)},
                   {"en.lproj/Localizable.strings", "a"},
                   {"install.sh", "a"},
                   {"art.psd", "a"},
                   {"art.ai", "a"},
                   {"Bundles/com.apple.Maps/art.png", drawing(60, kRed)}},
         .byHand = {{"Bundles/com.apple.Maps/art.png", drawing(60, kRed)}},
         .leftOut = {"Wallpaper~iphone.png", "LockBackground.png", "Icon.png",
                     "en.lproj/Localizable.strings", "install.sh", "art.psd", "art.ai"},
         .showsAsItIs = true,
         .showsNothing = true},
    };
}

std::vector<LayoutRow> listRows() {
    const std::string both = listOf(datesEntry() + daysEntry());
    const std::string masks = listOf(datesEntry() + daysEntry() + "<key>IB-MaskIcons</key><true/>");
    const std::string style =
        textEntry("CalendarIconDateStyle",
                  "font-family: HelveticaNeue-Bold; font-size: 30px; margin-top: -6px; color: "
                  "#00ff00") +
        textEntry("CalendarIconDayStyle",
                  "font-family: HelveticaNeue; font-size: 10px; margin-top: 34px; color: "
                  "rgb(255, 255, 0)");
    const std::string misspelt =
        dictionaryEntry("CalendarIconDateSettings",
                        textEntry("Font", "HelveticaNeue-Bold") + numberEntry("FontSize", 30) +
                            numberEntry("TextYoffset", 14) + textEntry("TextColor", "#00FF00") +
                            textEntry("ShadowColor", "rgba(255, 0, 0, 0.5)") +
                            numberEntry("ShadowYOffset", 3)) +
        daysEntry();
    const std::string spelt =
        dictionaryEntry("CalendarIconDateSettings",
                        textEntry("FontName", "HelveticaNeue-Bold") + numberEntry("FontSize", 30) +
                            numberEntry("TextYoffset", 14) + textEntry("TextColor", "00FF00") +
                            textEntry("ShadowColor", "FF0000") + numberEntry("ShadowYoffset", 3)) +
        daysEntry();
    LayoutRow right = listRow("4 a list that is right", both, both);
    right.showsAsItIs = true;
    LayoutRow tail = listRow("4 text behind the end of a list",
                             listOf(datesEntry() + daysEntry(), "</plist>\n<x"), both);
    tail.showsAsItIs = true;
    LayoutRow masked = listRow("4 the calendar is masked", masks, masks);
    masked.input.push_back({kMasks + ".png", alphaMask(120)});
    masked.byHand.push_back({kMasks + ".png", grayMask(120)});
    LayoutRow fuzzy = {
        .section = "4 identifiers that resemble others",
        .input = {{"IconBundles/com.apple.MobileSMS.other@2x.png", drawing(120, kRed)},
                  {"Info.plist", listOf("<key>FuzzyBundleIdentifiers</key><array><string>com.apple."
                                        "MobileSMS</string></array>")}},
        .byHand = {{"IconBundles/com.apple.MobileSMS-large.png", drawing(120, kRed)},
                   {"Info.plist", textOf(installedCalendar())}}};
    LayoutRow useless =
        listRow("4 keys without an effect",
                listOf(datesEntry() + daysEntry() + textEntry("BadgeStyle", "color: red") +
                       dictionaryEntry("BadgeSettings", textEntry("FontName", "Arial")) +
                       textEntry("DockMode", "flat") + textEntry("ThemeType", "Icons") +
                       numberEntry("FolderGridImageAlpha", 0.5) + textEntry("PackageName", "Name")),
                both);
    useless.showsAsItIs = true;
    return {
        std::move(right),
        listRow("4 misspelt keys and colours", listOf(misspelt), listOf(spelt)),
        listRow("4 one text of two", listOf(datesEntry()), listWithInstalledDays()),
        // The key counts where a mixture has a mask as well.
        listRow("4 a style sheet", listOf(style), masks),
        listRow("4 a list that says nothing", listOf(""), textOf(installedCalendar())),
        std::move(masked),
        std::move(fuzzy),
        std::move(useless),
        std::move(tail),
        listRow("4 a list that does not parse",
                "{ CalendarIconDateSettings = { TextColor = \xE2\x80\x9C"
                "00FF00\xE2\x80\x9D; TextYoffset = 14; }; "
                "CalendarIconDaySettings = { TextColor = \"FFFF00\"; }; }",
                "{ CalendarIconDateSettings = { TextColor = \"00FF00\"; TextYoffset = 14; }; "
                "CalendarIconDaySettings = { TextColor = \"FFFF00\"; }; }"),
    };
}

}  // namespace velmoranth::makers
