#include "makers/lint/requests.h"

#include <gtest/gtest.h>

#include <string>

namespace velmoranth::makers::requests_test {
namespace {

// "word argument bundle", usual ones first, "?" before the others.
std::string requests(const std::string& file) {
    std::string text;
    for (const FileRequest& request : requestsOf(file)) {
        const simulator::Question& question = request.question;
        text += (text.empty() ? "" : "; ") + std::string(request.isUsual ? "" : "?") +
                question.word + " " + question.argument +
                (question.bundle.empty() ? "" : " of " + question.bundle);
    }
    return text;
}

TEST(LintRequests, IconsAreAskedForByTheirIdentifier) {
    EXPECT_EQ(requests("IconBundles/com.apple.Maps-large.png"), "icon com.apple.Maps");
    EXPECT_EQ(requests("IconBundles/pinterest-large.png"), "icon pinterest");
    EXPECT_EQ(requests("IconBundles/(null)-large.png"), "icon (null)");
    EXPECT_EQ(requests("IconBundles/com.apple.Maps@3x.png"), "icon com.apple.Maps");
    EXPECT_EQ(requests("IconBundles/com.apple.Maps@3x-large.png"), "");
    EXPECT_EQ(requests("IconBundles/a b-large.png"), "");
    EXPECT_EQ(requests("IconBundles/below/com.apple.Maps-large.png"), "");
}

TEST(LintRequests, ImagesAreAskedForAsAppsDo) {
    EXPECT_EQ(requests("Bundles/com.a.b/Pin@3x.png"),
              "image Pin of com.a.b; image Pin.png of com.a.b; ?image Pin@3x of com.a.b; ?image "
              "Pin@3x.png of com.a.b");
    EXPECT_EQ(requests("Bundles/com.a.b/Pin.png"),
              "image Pin of com.a.b; image Pin.png of com.a.b");
    EXPECT_EQ(requests("Bundles/com.a.b/below/Pin"), "image below/Pin of com.a.b");
    EXPECT_EQ(requests("UIImages/Pin~ipad.png"),
              "image Pin; image Pin.png; ?image Pin~ipad; ?image Pin~ipad.png");
}

TEST(LintRequests, NothingElseIsNamedByAPath) {
    for (const char* const file : {"Info.plist", "Velmoranth/Folder.png", "UISounds/lock.caf",
                                   "Bundles/a.png", "a.png", "ANEMPageDots/Dot_Pages.png"}) {
        EXPECT_EQ(requests(file), "") << file;
    }
}

}  // namespace
}  // namespace velmoranth::makers::requests_test
