// The replacements on the page control: the theme's dots, or none at all.
#include "hooks/springboard/page_control_hooks.h"

#include "chrome_fixture.h"

namespace velmoranth::hooks::page_control_test {
namespace {

using platform::Dictionary;
using platform::ImageRef;
using tests::drawnPixels;
using tests::kBlue;
using tests::kGreen;
using tests::kRed;
using tests::Lines;
using tests::NamedViewOf;
using tests::solid;

const Dictionary kThemed{{"enable", true}};
// Whatever else is on.
const std::vector<Dictionary> kNotThemed{{{"removeDock", true}, {"removeLabels", true}},
                                         {{"removePageDots", true}, {"removeFolderBG", true}},
                                         {{"enable", true}, {"removePageDots", true}}};

class PageControlView final : public NamedViewOf<platform::SBIconListPageControl> {
  public:
    explicit PageControlView(tests::TestDevice& device)
        : NamedViewOf<platform::SBIconListPageControl>("SBIconListPageControl", "dots"),
          device_(device) {}

    ImageRef _searchIndicatorImage(bool isCurrent) override {
        record::tell(*this, record::messageOf("SBIconListPageControl", "_searchIndicatorImage"),
                     isCurrent);
        return device_.runtime.send<ImageRef, bool>(*this, "_searchIndicatorImage:", isCurrent);
    }

  private:
    tests::TestDevice& device_;
};

class PageControl : public tests::ChromeProcess {
  protected:
    PageControl() {
        addLayout<platform::SBIconListPageControl>("SBIconListPageControl");
        for (const std::string selector : {"_iconListIndicatorImage:", "_searchIndicatorImage:"}) {
            addMethod("SBIconListPageControl", selector,
                      std::function<ImageRef(platform::SBIconListPageControl&, bool)>(
                          [this, selector](platform::SBIconListPageControl&, bool isCurrent) {
                              original(selector + (isCurrent ? " YES" : " NO"));
                              // A new image every time.
                              given.push_back(device.image(solid(3, 3, kGreen)));
                              return given.back();
                          }));
        }
        install();
    }

    ImageRef dot(bool isCurrent) {
        given.clear();
        return device.runtime.send<ImageRef, bool>(*dots, "_iconListIndicatorImage:", isCurrent);
    }

    ImageRef searchDot(bool isCurrent) {
        given.clear();
        return device.runtime.send<ImageRef, bool>(*dots, "_searchIndicatorImage:", isCurrent);
    }

    void layout() { device.runtime.send<void>(*dots, "layoutSubviews"); }

    [[nodiscard]] static Lines call(const std::string& selector, bool isCurrent) {
        return {"orig " + selector + (isCurrent ? " YES" : " NO")};
    }

    std::shared_ptr<PageControlView> dots = std::make_shared<PageControlView>(device);
    // What the platform's methods gave.
    std::vector<ImageRef> given;
};

using PageControlLayout = PageControl;
using PageDots = PageControl;
using SearchDot = PageControl;

TEST_F(PageControlLayout, WithDotsRunsThePlatformsTwice) {
    for (const Dictionary& visible :
         {Dictionary{}, kThemed, Dictionary{{"removePageDots", true}}}) {
        settings({"A"}, visible);
        layout();
        EXPECT_EQ(taken(), (Lines{"orig layoutSubviews", "orig layoutSubviews"}));
    }
    EXPECT_FALSE(dots->isHidden());
}

TEST_F(PageControlLayout, WithoutDotsRunsThePlatformsOnceAndHidesTheControl) {
    settings({"A"}, {{"enable", true}, {"removePageDots", true}});
    layout();
    EXPECT_EQ(taken(), (Lines{"orig layoutSubviews", "-[UIView setHidden:] dots YES"}));
    EXPECT_TRUE(dots->isHidden());
    // Nothing shows it again.
    settings({"A"}, kThemed);
    layout();
    EXPECT_TRUE(dots->isHidden());
}

TEST_F(PageDots, UnlessThemedAreThePlatformsSecondAnswer) {
    for (const char* file : {"SBPageDotCurrent.png", "SBPageDot.png", "Spotlight_Pages.png"}) {
        themePng(std::string("A/Bundles/com.apple.springboard/") + file);
    }
    for (Dictionary notThemed : kNotThemed) {
        for (const bool isLogged : {false, true}) {
            notThemed.insert_or_assign("enableLogging", isLogged);
            settings({"A"}, notThemed);
            for (const bool isCurrent : {true, false}) {
                const ImageRef image = dot(isCurrent);
                const Lines once = call("_iconListIndicatorImage:", isCurrent);
                EXPECT_EQ(taken(), tests::joined({once, once}));
                EXPECT_EQ(image, given.at(1));
            }
        }
    }
}

TEST_F(PageDots, ThemesOwnComeAfterOneCallOfThePlatforms) {
    settings({"A"}, kThemed);
    themePng("A/Bundles/com.apple.springboard/SBPageDotCurrent.png", kRed);
    themePng("A/Bundles/com.apple.springboard/SBPageDot.png", kBlue);
    EXPECT_EQ(drawnPixels(dot(true)), solid(6, 6, kRed));
    EXPECT_EQ(steps(), call("_iconListIndicatorImage:", true));
    EXPECT_EQ(drawnPixels(dot(false)), solid(6, 6, kBlue));
    EXPECT_EQ(steps(), call("_iconListIndicatorImage:", false));
}

TEST_F(PageDots, WithoutAFileAskTheControlForItsSearchDotFirst) {
    settings({"A"}, kThemed);
    for (const bool isCurrent : {true, false}) {
        const ImageRef image = dot(isCurrent);
        // The replacement for the search dot answers, with the platform's twice.
        const Lines once = call("_iconListIndicatorImage:", isCurrent);
        const Lines search = call("_searchIndicatorImage:", true);
        EXPECT_EQ(steps(),
                  tests::joined({once,
                                 {"-[SBIconListPageControl _searchIndicatorImage:] dots YES"},
                                 search,
                                 search,
                                 once}));
        EXPECT_EQ(image, given.back());
    }
}

TEST_F(PageDots, ThemesSearchDotIsAskedForAndDropped) {
    settings({"A"}, {{"enable", true}, {"enableLogging", true}});
    themePng("A/ANEMPageDots/Spotlight_Pages.png");
    const ImageRef image = dot(false);
    const Lines once = call("_iconListIndicatorImage:", false);
    const Lines search = call("_searchIndicatorImage:", true);
    EXPECT_EQ(steps(), tests::joined({once,
                                      {"-[SBIconListPageControl _searchIndicatorImage:] dots YES"},
                                      search,
                                      search,
                                      {"log Velmoranth search Ind " + given.at(2)->description()},
                                      once}));
    EXPECT_EQ(image, given.back());
}

TEST_F(PageDots, ThemeMayHaveThatOfTheCurrentPageAlone) {
    settings({"A"}, kThemed);
    themePng("A/ANEMPageDots/Dot_Current.png");
    EXPECT_EQ(drawnPixels(dot(true)), solid(6, 6, kRed));
    const ImageRef other = dot(false);
    EXPECT_EQ(other, given.back());
    EXPECT_EQ(drawnPixels(other), solid(3, 3, kGreen));
}

TEST_F(SearchDot, UnlessThemedIsThePlatformsSecondAnswer) {
    themePng("A/Bundles/com.apple.springboard/Spotlight_Pages.png");
    for (const Dictionary& notThemed : kNotThemed) {
        settings({"A"}, notThemed);
        for (const bool isCurrent : {true, false}) {
            const ImageRef image = searchDot(isCurrent);
            const Lines once = call("_searchIndicatorImage:", isCurrent);
            EXPECT_EQ(taken(), tests::joined({once, once}));
            EXPECT_EQ(image, given.at(1));
        }
    }
}

TEST_F(SearchDot, IsLoggedWithAFreshImageWhateverElseIsOff) {
    for (Dictionary notThemed : kNotThemed) {
        notThemed.insert_or_assign("enableLogging", true);
        settings({"A"}, notThemed);
        const ImageRef image = searchDot(false);
        const Lines once = call("_searchIndicatorImage:", false);
        EXPECT_EQ(
            taken(),
            tests::joined(
                {once, once, {"log Velmoranth search Ind " + given.at(1)->description()}, once}));
        EXPECT_EQ(image, given.at(2));
    }
}

TEST_F(SearchDot, ThemesOwnComesAfterOneCallOfThePlatforms) {
    settings({"A"}, kThemed);
    themePng("A/Bundles/com.apple.springboard/Spotlight_Pages.png");
    for (const bool isCurrent : {true, false}) {
        EXPECT_EQ(drawnPixels(searchDot(isCurrent)), solid(6, 6, kRed));
        EXPECT_EQ(steps(), call("_searchIndicatorImage:", isCurrent));
    }
}

TEST_F(SearchDot, ThemesOwnIsLoggedWithThePlatformsImage) {
    settings({"A"}, {{"enable", true}, {"enableLogging", true}});
    themePng("A/ANEMPageDots/Spotlight_Pages.png");
    EXPECT_EQ(drawnPixels(searchDot(true)), solid(6, 6, kRed));
    const Lines once = call("_searchIndicatorImage:", true);
    EXPECT_EQ(
        steps(),
        tests::joined({once, once, {"log Velmoranth search Ind " + given.at(1)->description()}}));
}

TEST_F(SearchDot, WithoutAFileIsThePlatformsSecondAnswer) {
    settings({"A"}, kThemed);
    themePng("A/ANEMPageDots/Dot_Pages.png");
    const ImageRef image = searchDot(true);
    const Lines once = call("_searchIndicatorImage:", true);
    EXPECT_EQ(steps(), tests::joined({once, once}));
    EXPECT_EQ(image, given.at(1));
}

}  // namespace
}  // namespace velmoranth::hooks::page_control_test
