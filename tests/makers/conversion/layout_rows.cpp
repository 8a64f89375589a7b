#include "tests/makers/conversion/layout_rows.h"

#include "tests/desktop/image_io/test_images.h"
#include "tests/makers/conversion/theme_fixture.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <utility>

namespace velmoranth::makers {
namespace {

namespace images = desktop::test_images;

constexpr std::size_t kSide = 60;

// Two colours, so that what is moved, turned or scaled is seen.
std::string art(std::size_t side, const Color& color) {
    return png(side, side, color, kBlack);
}

std::string iconOf(const std::string& identifier) {
    return "IconBundles/" + identifier + "-large.png";
}

std::string textOf(const platform::Data& bytes) {
    return {bytes.begin(), bytes.end()};
}

// A gradient in the rows of such a file.
std::string pngOf(const images::PngSpec& spec) {
    const std::size_t rowBytes = (spec.width * images::bitsPerPixel(spec) + 7) / 8;
    platform::Data rows(rowBytes * spec.height);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        rows[i] = static_cast<std::uint8_t>((i % rowBytes) * 255 / rowBytes ^ (i / rowBytes));
    }
    return textOf(images::pngFile(spec, rows));
}

std::string jpeg() {
    platform::Data samples(kSide * kSide * 3);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        samples[i] = static_cast<std::uint8_t>(i * 255 / samples.size());
    }
    return textOf(images::jpegFile(kSide, kSide, 3, samples));
}

std::string phonePng() {
    platform::Data rows(kSide * kSide * 4, 255);
    for (std::size_t i = 0; i < rows.size(); i += 4) {
        rows[i] = static_cast<std::uint8_t>(i * 255 / rows.size());
    }
    return textOf(images::phonePngFile({.width = kSide, .height = kSide}, rows));
}

LayoutRow inContainer(std::string_view section, Container container,
                      tests::Packing packing = tests::Packing::none) {
    return {.section = section,
            .input = {{"IconBundles/com.apple.Maps@3x.png", art(180, kRed)},
                      {"IconBundles/com.apple.camera-large.png", art(120, kGreen)}},
            .byHand = {{iconOf("com.apple.Maps"), art(180, kRed)},
                       {iconOf("com.apple.camera"), art(120, kGreen)}},
            .container = container,
            .packing = packing};
}

const LayoutRow& rowNamed(const std::vector<LayoutRow>& rows, std::string_view section) {
    const auto found = std::ranges::find(rows, section, &LayoutRow::section);
    if (found == rows.end()) {
        throw std::runtime_error("there is no row " + std::string(section));
    }
    return *found;
}

LayoutRow mixtureOf(std::string_view name, const std::array<std::string_view, 5>& sections) {
    std::vector<LayoutRow> all = iconRows();
    std::ranges::move(imageRows(), std::back_inserter(all));
    std::ranges::move(listRows(), std::back_inserter(all));
    LayoutRow mixture{.section = name, .input = {}, .byHand = {}};
    for (const std::string_view section : sections) {
        const LayoutRow& row = rowNamed(all, section);
        std::ranges::copy(row.input, std::back_inserter(mixture.input));
        std::ranges::copy(row.byHand, std::back_inserter(mixture.byHand));
        std::ranges::copy(row.leftOut, std::back_inserter(mixture.leftOut));
        std::ranges::copy(row.apps, std::back_inserter(mixture.apps));
    }
    return mixture;
}

}  // namespace

std::vector<LayoutRow> containerRows() {
    using enum Container;
    return {
        inContainer("1 a folder", folder),
        inContainer("1 a folder without the ending", plain),
        inContainer("1 a folder with others above it", deep),
        inContainer("1 a package in gzip", package, tests::Packing::gzip),
        inContainer("1 a package in xz", package, tests::Packing::xz),
        inContainer("1 a package in lzma", package, tests::Packing::lzma),
        inContainer("1 a package in zstd", package, tests::Packing::zstd),
        inContainer("1 a package of plain members", package),
        inContainer("1 a package with var jb above it", rootless, tests::Packing::gzip),
        inContainer("1 a zip with clutter", zip),
        inContainer("1 a tar", tar),
        inContainer("1 a tar in gzip", tar, tests::Packing::gzip),
        inContainer("1 a tar in xz", tar, tests::Packing::xz),
    };
}

std::vector<LayoutRow> iconRows() {
    const std::string i = "IconBundles/";
    const std::string maps = iconOf("com.apple.Maps");
    const std::string camera = iconOf("com.apple.camera");
    const std::string weather = iconOf("com.apple.weather");
    const std::string store = iconOf("com.apple.AppStore");
    const std::string notes = iconOf("com.apple.mobilenotes");
    const std::string stocks = iconOf("com.apple.stocks");
    const std::string sms = iconOf("com.apple.MobileSMS");
    const images::PngSpec deepSpec{.width = kSide, .height = kSide, .colorType = 2, .bitDepth = 16};
    const images::PngSpec woven{.width = kSide, .height = kSide, .interlaced = true};
    const images::PngSpec colors{.width = kSide,
                                 .height = kSide,
                                 .colorType = 3,
                                 .bitDepth = 4,
                                 .palette = images::palette16()};
    const images::PngSpec gray{.width = kSide, .height = kSide, .colorType = 0};
    const std::string broken = art(120, kGreen).substr(0, 70);
    return {
        {.section = "2 large",
         .input = {{maps, art(180, kRed)}, {camera, art(120, kGreen)}},
         .byHand = {{maps, art(180, kRed)}, {camera, art(120, kGreen)}},
         .showsAsItIs = true},
        {.section = "2 names with scale or device",
         .input = {{i + "com.apple.Maps.png", art(60, kRed)},
                   {i + "com.apple.camera@2x.png", art(120, kGreen)},
                   {i + "com.apple.weather@3x.png", art(180, kBlue)},
                   {i + "com.apple.AppStore~iphone.png", art(60, kRed)},
                   {i + "com.apple.mobilenotes~ipad.png", art(76, kGreen)},
                   {i + "com.apple.stocks-large@2x.png", art(120, kBlue)},
                   {i + "com.apple.MobileSMS@2x~ipad.png", art(152, kRed)},
                   {i + "com.apple.tv~ipad@2x.png", art(152, kGreen)}},
         .byHand = {{maps, art(60, kRed)},
                    {camera, art(120, kGreen)},
                    {weather, art(180, kBlue)},
                    {store, art(60, kRed)},
                    {notes, art(76, kGreen)},
                    {stocks, art(120, kBlue)},
                    {sms, art(152, kRed)},
                    {iconOf("com.apple.tv"), art(152, kGreen)}}},
        {.section = "2 which of several",
         .input = {{i + "com.apple.Maps@2x.png", art(120, kGreen)},
                   {i + "com.apple.Maps@3x.png", art(180, kRed)},
                   {i + "com.apple.Maps.png", png(300, 200, kBlue, kBlue)},
                   {i + "com.apple.camera@2x~ipad.png", art(152, kBlue)},
                   {i + "com.apple.camera@2x.png", art(152, kRed)},
                   {weather, art(60, kGreen)},
                   {i + "com.apple.weather@3x.png", art(180, kRed)}},
         .byHand = {{maps, art(180, kRed)}, {camera, art(152, kRed)}, {weather, art(60, kGreen)}},
         .leftOut = {i + "com.apple.Maps@2x.png", i + "com.apple.Maps.png",
                     i + "com.apple.camera@2x~ipad.png", i + "com.apple.weather@3x.png"}},
        {.section = "2 dark and tinted",
         .input = {{i + "com.apple.Maps@3x.png", art(60, kRed)},
                   {i + "com.apple.Maps-dark@3x.png", art(180, kGreen)},
                   {i + "com.apple.Maps-large-dark.png", art(180, kGreen)},
                   {i + "com.apple.camera-tinted.png", art(180, kBlue)}},
         .byHand = {{maps, art(60, kRed)}},
         .leftOut = {i + "com.apple.Maps-dark@3x.png", i + "com.apple.Maps-large-dark.png",
                     i + "com.apple.camera-tinted.png"}},
        {.section = "2 a flat folder",
         .input = {{"com.apple.Maps.png", art(60, kRed)},
                   {"com.apple.camera@3x.png", art(180, kGreen)},
                   {"com.vendor.app-large.png", art(120, kBlue)},
                   {"pinterest@2x.png", art(120, kGreen)},
                   {"preview.png", art(300, kRed)}},
         .byHand = {{maps, art(60, kRed)},
                    {camera, art(180, kGreen)},
                    {iconOf("com.vendor.app"), art(120, kBlue)},
                    {iconOf("pinterest"), art(120, kGreen)}},
         .leftOut = {"preview.png"},
         .apps = {"com.apple.Maps", "com.apple.camera", "com.vendor.app", "pinterest"}},
        {.section = "2 an apps own icon in its bundle",
         .input = {{"Bundles/com.apple.Maps/icon@2x.png", art(120, kRed)},
                   {"Bundles/com.apple.camera/Icon.png", art(60, kGreen)},
                   {"Bundles/com.apple.weather/AppIcon60x60@2x.png", art(120, kBlue)},
                   {"Bundles/com.apple.AppStore/Icon-72@2x.png", art(144, kRed)},
                   {"Bundles/com.apple.mobilenotes/Icon-60@3x.png", art(180, kGreen)},
                   {"Bundles/com.apple.stocks/icon@3x.png", art(180, kRed)},
                   {i + "com.apple.stocks.png", art(60, kBlue)},
                   {"Bundles/com.apple.springboard/icon.png", art(60, kRed)}},
         .byHand = {{maps, art(120, kRed)},
                    {camera, art(60, kGreen)},
                    {weather, art(120, kBlue)},
                    {store, art(144, kRed)},
                    {notes, art(180, kGreen)},
                    {stocks, art(60, kBlue)}}},
        {.section = "2 a flat folder of display names",
         .input = {{"Safari.png", art(60, kRed)},
                   {"phone@3x.png", art(180, kGreen)},
                   {"App_Store-large.png", art(120, kBlue)},
                   {"Maps.png", art(120, kBlue)},
                   {"com.apple.Maps.png", art(60, kRed)},
                   {"Nobody.png", art(60, kRed)}},
         .byHand = {{iconOf("com.apple.mobilesafari"), art(60, kRed)},
                    {iconOf("com.apple.mobilephone"), art(180, kGreen)},
                    {store, art(120, kBlue)},
                    {maps, art(60, kRed)}},
         .leftOut = {"Maps.png", "Nobody.png"}},
        {.section = "2 display names",
         .input = {{"Icons/Maps.png", art(60, kRed)},
                   {"Icons/camera@2x.png", art(120, kGreen)},
                   {"Icons/App Store.png", art(60, kBlue)},
                   {"Icons/Nobody.png", art(60, kRed)}},
         .byHand = {{maps, art(60, kRed)}, {camera, art(120, kGreen)}, {store, art(60, kBlue)}},
         .leftOut = {"Icons/Nobody.png"}},
        {.section = "2 folders of apps",
         .input = {{"Folders/Maps.app/icon@2x.png", art(120, kRed)},
                   {"Folders/Camera.app/Icon.png", art(60, kGreen)},
                   {"Folders/Nobody.app/icon.png", art(60, kRed)}},
         .byHand = {{maps, art(120, kRed)}, {camera, art(60, kGreen)}},
         .leftOut = {"Folders/Nobody.app/icon.png"}},
        {.section = "2 letter case",
         .input = {{i + "com.apple.mobilesms-large.png", art(120, kRed)},
                   {i + "com.apple.Camera@2x.png", art(120, kGreen)},
                   {i + "com.apple.maps-large.png", art(120, kBlue)},
                   {maps, art(120, kRed)},
                   {i + "com.apple.Weather-large.png", art(120, kBlue)},
                   {weather, art(120, kBlue)}},
         .byHand = {{sms, art(120, kRed)},
                    {camera, art(120, kGreen)},
                    {maps, art(120, kRed)},
                    {weather, art(120, kBlue)}},
         .leftOut = {i + "com.apple.Weather-large.png"}},
        {.section = "2 letter case of folders and fixed names",
         .input = {{"iconbundles/com.apple.Maps-large.png", art(120, kRed)},
                   {"ICONBUNDLES/com.apple.camera@3X.PNG", art(120, kGreen)},
                   {"VelMoranth/Folder.png", art(60, kGreen)},
                   {"bundles/com.apple.SpringBoard/sbbadgebg.png", art(24, kBlue)}},
         .byHand = {{maps, art(120, kRed)},
                    {camera, art(120, kGreen)},
                    {"Velmoranth/Folder.png", art(60, kGreen)},
                    {"Bundles/com.apple.springboard/SBBadgeBG.png", art(24, kBlue)}}},
        {.section = "2 leftovers of editing",
         .input = {{i + "com.apple.Maps@2x.png", art(60, kRed)},
                   {i + "com.apple.Maps 2.png", art(180, kGreen)},
                   {i + "com.apple.Maps old.png", art(180, kGreen)},
                   {i + "com.apple.camera-alt.png", art(180, kGreen)},
                   {i + "com.apple.Maps@2x - Copy.png", art(180, kGreen)},
                   {i + "com.apple. weather.png", art(180, kGreen)}},
         .byHand = {{maps, art(60, kRed)}},
         .leftOut = {i + "com.apple.Maps 2.png", i + "com.apple.Maps old.png",
                     i + "com.apple.camera-alt.png", i + "com.apple.Maps@2x - Copy.png",
                     i + "com.apple. weather.png"}},
        {.section = "2 one picture for several",
         .input = {{i + "com.apple.Maps.png", art(60, kRed)},
                   {i + "com.apple.camera.png", art(60, kRed)}},
         .byHand = {{maps, art(60, kRed)}, {camera, art(60, kRed)}}},
        {.section = "2 every kind of picture",
         .input = {{i + "com.apple.Maps@3x.png", jpeg()},
                   {i + "com.apple.camera@3x.png", pngOf(deepSpec)},
                   {i + "com.apple.weather@3x.png", pngOf(woven)},
                   {i + "com.apple.AppStore@3x.png", pngOf(colors)},
                   {i + "com.apple.mobilenotes@3x.png", pngOf(gray)},
                   {i + "com.apple.stocks@3x.png", phonePng()}},
         .byHand = {{maps, jpeg()},
                    {camera, pngOf(deepSpec)},
                    {weather, pngOf(woven)},
                    {store, pngOf(colors)},
                    {notes, pngOf(gray)},
                    {stocks, phonePng()}}},
        {.section = "2 larger than any icon shows",
         .input = {{maps, art(2048, kRed)}, {i + "com.apple.camera@3x.png", art(1024, kGreen)}},
         .byHand = {{maps, art(1024, kRed)}, {camera, art(1024, kGreen)}}},
        {.section = "2 empty and broken files",
         .input = {{maps, ""},
                   {i + "com.apple.Maps@3x.png", art(60, kRed)},
                   {camera, broken},
                   {i + "com.apple.weather@2x.png", ""}},
         .byHand = {{maps, art(60, kRed)}},
         .leftOut = {maps, camera, i + "com.apple.weather@2x.png"}},
        {.section = "2 not square",
         .input = {{i + "com.apple.Maps@3x.png", png(120, 180, kRed, kBlack)}},
         .byHand = {{maps, png(120, 180, kRed, kBlack)}}},
        {.section = "6 one place twice",
         .input = {{"com.apple.Maps-large.png", art(120, kGreen)},
                   {maps, art(60, kRed)},
                   {"Icons/Camera.png", art(60, kRed)},
                   {i + "com.apple.camera@2x.png", art(60, kGreen)},
                   {"com.apple.weather@2x.png", art(60, kBlue)},
                   {i + "com.apple.weather.png", art(60, kBlue)}},
         .byHand = {{maps, art(120, kGreen)}, {camera, art(60, kGreen)}, {weather, art(60, kBlue)}},
         .leftOut = {maps, "Icons/Camera.png", i + "com.apple.weather.png"}},
    };
}

std::vector<LayoutRow> mixtures() {
    return {
        mixtureOf("five: a", {"2 names with scale or device", "3 a mask by alpha", "3 the badge",
                              "3 page dots of the toolkit", "4 a style sheet"}),
        mixtureOf("five: b",
                  {"2 an apps own icon in its bundle", "2 dark and tinted", "3 effects with scales",
                   "3 the plate of folders", "4 misspelt keys and colours"}),
        mixtureOf("five: c", {"2 display names", "3 the dock", "3 what belongs to no theme",
                              "3 one clear pixel", "4 a list that does not parse"}),
        mixtureOf("five: d", {"2 folders of apps", "2 empty and broken files", "3 the folders icon",
                              "3 sounds and fonts", "4 a list that says nothing"}),
    };
}

}  // namespace velmoranth::makers
