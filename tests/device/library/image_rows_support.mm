#include "device/library/image_rows_support.h"

#include <objc/runtime.h>

#include <algorithm>
#include <cstddef>

namespace velmoranth::standins {
namespace {

constexpr std::size_t kImages = 8;

Lines readsAll(const std::string& base, const Lines& endings) {
    Lines lines;
    for (const std::string& ending : endings) {
        lines.push_back(readsImage(base + ending));
    }
    return lines;
}

}  // namespace

std::string bundleFile(const std::string& identifier, const std::string& name) {
    return "A/Bundles/" + identifier + "/" + name + "@3x.png";
}

std::string looseFile(const std::string& name) {
    return "A/UIImages/" + name + "@3x.png";
}

std::string iconFile(const std::string& identifier) {
    return "A/IconBundles/" + identifier + "-large.png";
}

std::string themePath(const std::string& file) {
    return "/Library/Themes/" + file;
}

Lines missesInBundle(const std::string& identifier, const std::string& name) {
    return readsAll("A/Bundles/" + identifier + "/" + name, {"@3x.png", ".png", ""});
}

Lines missesLoose(const std::string& name) {
    return readsAll("A/UIImages/" + name, {"@3x.png", "@2x.png", ".png", ""});
}

Lines redraws(CGSize size, const std::string& image) {
    Lines lines{"UIGraphicsBeginImageContextWithOptions " + wordsOf(size) + " NO 0"};
    if (!image.empty()) {
        lines.push_back(sentTo(image, "-[UIImage drawInRect:]", {"(0, 0) " + wordsOf(size)}));
    }
    lines.emplace_back("UIGraphicsGetImageFromCurrentImageContext");
    lines.emplace_back("UIGraphicsEndImageContext");
    return lines;
}

void changeTheme() {
    postDarwinNotification("com.qor.velmoranththemechanged.prefs");
    runMainQueue();
}

NSString* ownString(const char* text, const std::string& name) {
    NSString* const string = [[NSMutableString alloc] initWithUTF8String:text];
    return named(string, name);
}

Class heirOf(Class parent, const char* name) {
    const Class cls = objc_allocateClassPair(parent, name, 0);
    objc_registerClassPair(cls);
    return cls;
}

ImageRows::ImageRows(const SystemVersion& system) : ReplacedMethods(system) {
    for (std::size_t number = 0; number < kImages; ++number) {
        images.push_back(namedImage("image " + std::to_string(number), 20 + number, 10));
    }
}

void ImageRows::answerInTurn(const std::string& method) {
    setAnswers(method, {images[0], images[1], images[2], images[3], images[4], images[5], images[6],
                        images[7]});
}

int ImageRows::answeredBy(id image) const {
    const auto found = std::ranges::find(images, static_cast<UIImage*>(image));
    return found == images.end() ? -1 : static_cast<int>(found - images.begin());
}

NSBundle* ImageRows::bundleOf(const char* identifier) {
    const std::string path =
        "/Library/Kits/" + std::string(identifier == nullptr ? "none" : identifier) + ".bundle";
    file(path + "/Info.plist",
         identifier == nullptr ? "{ }"
                               : "{ CFBundleIdentifier = \"" + std::string(identifier) + "\"; }");
    return [NSBundle bundleWithPath:[NSString stringWithUTF8String:path.c_str()]];
}

SBIcon* ImageRows::iconOf(NSString* identifier) {
    SBIcon* const icon = named([[SBIcon alloc] init], "icon");
    setVariable(icon, "_nodeIdentifier", identifier);
    return icon;
}

}  // namespace velmoranth::standins
