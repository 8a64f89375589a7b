// The replacements on the page control: the theme's dots, or none.
#include "device/library/rows_support.h"

namespace velmoranth::standins::page_control_rows_test {
namespace {

constexpr const char* kLayout = "-[SBIconListPageControl layoutSubviews]";
constexpr const char* kDot = "-[SBIconListPageControl _iconListIndicatorImage:]";
constexpr const char* kSearchDot = "-[SBIconListPageControl _searchIndicatorImage:]";

const std::string kFolder = "A/Bundles/com.apple.springboard/";

std::string dotCall(bool isCurrent) {
    return sentTo("dots", kDot, {isCurrent ? "YES" : "NO"});
}

std::string searchDotCall(bool isCurrent) {
    return sentTo("dots", kSearchDot, {isCurrent ? "YES" : "NO"});
}

// Switches with which the dots are the platform's.
const std::initializer_list<const char*> kNotThemed[] = {
    {"removeDock"}, {"removePageDots"}, {"enable", "removePageDots"}};

class PageControl : public ReplacedMethods {
  protected:
    UIImage* first = namedImage("first", 3, 3);
    UIImage* second = namedImage("second", 3, 3);
    UIImage* third = namedImage("third", 3, 3);
    SBIconListPageControl* dots = named([[SBIconListPageControl alloc] init], "dots");
    Call layout = [this] { [dots layoutSubviews]; };
    Call askDot = [this] { [dots _iconListIndicatorImage:YES]; };
    Call askSearchDot = [this] { [dots _searchIndicatorImage:YES]; };
};

using PageControlLayout = PageControl;
using PageDot = PageControl;
using SearchDot = PageControl;

TEST_F(PageControlLayout, WithDotsRunsThePlatformsTwice) {
    for (const char* const only : {"enable", "removePageDots"}) {
        settings({"A"}, {only});
        layout();
        EXPECT_EQ(taken(), (Lines{sentTo("dots", kLayout), sentTo("dots", kLayout)}));
        expectNothingLeft(layout);
        expectExceptionsToPass(kLayout, layout);
    }
    EXPECT_FALSE(dots->_hidden);
}

TEST_F(PageControlLayout, WithoutDotsRunsThePlatformsOnceAndHidesTheControl) {
    settings({"A"}, {"enable", "removePageDots"});
    layout();
    EXPECT_EQ(taken(), (Lines{sentTo("dots", kLayout), "-[UIView setHidden:] dots YES"}));
    EXPECT_TRUE(dots->_hidden);
    expectNothingLeft(layout);
    expectExceptionsToPass(kLayout, layout);
    expectExceptionsToPass("-[UIView setHidden:]", layout);
}

TEST_F(PageDot, UnlessThemedIsThePlatformsSecondAnswer) {
    themePng(kFolder + "SBPageDotCurrent.png");
    themePng(kFolder + "SBPageDot.png");
    for (const auto& switches : kNotThemed) {
        settings({"A"}, switches);
        for (const bool isCurrent : {true, false}) {
            for (const id answer :
                 {static_cast<id>(second), static_cast<id>(nil), static_cast<id>(@"no image")}) {
                setAnswers(kDot, {first, answer, third});
                EXPECT_EQ(address([dots _iconListIndicatorImage:isCurrent]), address(answer));
                EXPECT_EQ(taken(), (Lines{dotCall(isCurrent), dotCall(isCurrent)}));
            }
        }
    }
}

TEST_F(PageDot, IsTheThemesOwn) {
    themePng(kFolder + "SBPageDotCurrent.png");
    themePng("A/ANEMPageDots/Dot_Pages.png");
    settings({"A"}, {"enable"});
    setAnswer(kDot, first);
    EXPECT_EQ(pathOf([dots _iconListIndicatorImage:YES]),
              "/Library/Themes/" + kFolder + "SBPageDotCurrent.png");
    EXPECT_EQ(taken(), (Lines{dotCall(true), readsImage(kFolder + "SBPageDotCurrent.png")}));
    EXPECT_EQ(pathOf([dots _iconListIndicatorImage:NO]),
              "/Library/Themes/A/ANEMPageDots/Dot_Pages.png");
    EXPECT_EQ(taken(), (Lines{dotCall(false), readsImage(kFolder + "SBPageDot.png"),
                              readsImage("A/ANEMPageDots/Dot_Pages.png")}));
}

TEST_F(PageDot, WithoutAFileAsksForTheSearchDotFirst) {
    settings({"A"}, {"enable"});
    for (const bool isCurrent : {true, false}) {
        setAnswers(kDot, {first, second, third});
        EXPECT_EQ(address([dots _iconListIndicatorImage:isCurrent]), address(second));
        // As a message, so that the replacement of the search dot answers.
        EXPECT_EQ(steps(), (Lines{dotCall(isCurrent), searchDotCall(true), searchDotCall(true),
                                  dotCall(isCurrent)}));
    }
}

TEST_F(PageDot, LeavesNothingBehindAndPassesExceptionsOn) {
    setAnswer(kDot, first);
    for (const char* const enable : {"removeDock", "enable"}) {
        settings({"A"}, {enable});
        expectNothingLeft(askDot);
        expectExceptionsToPass(kDot, askDot);
    }
    expectExceptionsToPass(kSearchDot, askDot);
    themePng(kFolder + "SBPageDotCurrent.png");
    expectNothingLeft(askDot);
    expectExceptionsToPass(kDot, askDot);
}

TEST_F(SearchDot, UnlessThemedIsThePlatformsSecondAnswer) {
    themePng(kFolder + "Spotlight_Pages.png");
    for (const auto& switches : kNotThemed) {
        settings({"A"}, switches);
        for (const bool isCurrent : {true, false}) {
            for (const id answer : {static_cast<id>(second), static_cast<id>(nil)}) {
                setAnswers(kSearchDot, {first, answer, third});
                EXPECT_EQ(address([dots _searchIndicatorImage:isCurrent]), address(answer));
                EXPECT_EQ(taken(), (Lines{searchDotCall(isCurrent), searchDotCall(isCurrent)}));
            }
        }
    }
}

TEST_F(SearchDot, IsTheThemesOwn) {
    settings({"A"}, {"enable"});
    setAnswers(kSearchDot, {first, second, third});
    EXPECT_EQ(address([dots _searchIndicatorImage:NO]), address(second));
    EXPECT_EQ(taken(),
              (Lines{searchDotCall(false), readsImage(kFolder + "Spotlight_Pages.png"),
                     readsImage("A/ANEMPageDots/Spotlight_Pages.png"), searchDotCall(false)}));
    for (const std::string& path :
         {std::string("A/ANEMPageDots/Spotlight_Pages.png"), kFolder + "Spotlight_Pages.png"}) {
        themePng(path);
        for (const bool isCurrent : {true, false}) {
            EXPECT_EQ(pathOf([dots _searchIndicatorImage:isCurrent]), "/Library/Themes/" + path);
            EXPECT_EQ(steps(), Lines{searchDotCall(isCurrent)});
        }
    }
}

TEST_F(SearchDot, IsLoggedWithAFreshImage) {
    for (const char* const enable : {"removeDock", "enable"}) {
        settings({"A"}, {enable, "enableLogging"});
        for (const id answer : {static_cast<id>(second), static_cast<id>(nil)}) {
            setAnswers(kSearchDot, {first, answer, third, first});
            clearLog();
            EXPECT_EQ(address([dots _searchIndicatorImage:NO]), address(third));
            EXPECT_EQ(steps(),
                      (Lines{searchDotCall(false), searchDotCall(false), searchDotCall(false)}));
            EXPECT_EQ(logLines(), Lines{"Velmoranth search Ind " + describe(answer)});
        }
    }
}

TEST_F(SearchDot, LeavesNothingBehindAndPassesExceptionsOn) {
    setAnswer(kSearchDot, first);
    for (const char* const enable : {"removeDock", "enable"}) {
        settings({"A"}, {enable, "enableLogging"});
        expectNothingLeft(askSearchDot);
        expectExceptionsToPass(kSearchDot, askSearchDot);
    }
    themePng(kFolder + "Spotlight_Pages.png");
    expectNothingLeft(askSearchDot);
    expectExceptionsToPass(kSearchDot, askSearchDot);
}

}  // namespace
}  // namespace velmoranth::standins::page_control_rows_test
