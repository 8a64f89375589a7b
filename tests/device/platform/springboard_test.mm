#import "device/standins/springboard.h"

#include "device/platform/exceptions.h"
#include "device/platform/handles.h"
#include "device/platform/services.h"
#include <gtest/gtest.h>
#include <objc/runtime.h>

#include <memory>

namespace velmoranth::device::springboard_test {
namespace {

using standins::clearJournal;
using standins::journal;
using standins::setAnswer;
using standins::setVariable;

template <class Class>
Class* made() {
    return [[[Class alloc] init] autorelease];
}

template <class Class>
Class* madeView() {
    return [[[Class alloc] initWithFrame:CGRect{{0, 0}, {50, 60}}] autorelease];
}

template <class Interface>
std::shared_ptr<Interface> handleOf(id object) {
    return wrap<Interface>(object);
}

TEST(SBIcons, TellTheirIdentifiers) {
    @autoreleasepool {
        SBIcon* const native = made<SBCalendarApplicationIcon>();
        const auto icon = handleOf<platform::SBIcon>(native);
        const auto calendar = handleOf<platform::SBCalendarApplicationIcon>(native);
        clearJournal();
        EXPECT_EQ(icon->leafIdentifier(), std::nullopt);
        setVariable(native, "_leafIdentifier", @"leaf");
        setVariable(native, "_nodeIdentifier", @"node");
        setVariable(native, "_uniqueIdentifier", [NSNumber numberWithInt:3]);
        EXPECT_EQ(icon->leafIdentifier(), "leaf");
        EXPECT_EQ(calendar->nodeIdentifier(), "node");
        EXPECT_EQ(icon->uniqueIdentifier(), std::nullopt);
        EXPECT_EQ(journal(),
                  (Strings{"-[SBIcon leafIdentifier] SBCalendarApplicationIcon nil",
                           "-[SBIcon leafIdentifier] SBCalendarApplicationIcon leaf",
                           "-[SBIcon nodeIdentifier] SBCalendarApplicationIcon leaf",
                           "-[SBIcon uniqueIdentifier] SBCalendarApplicationIcon leaf"}));
    }
    EXPECT_EQ(standins::allLiving(), Strings{});
}

TEST(SBIconViews, HaveAnIconOrNone) {
    @autoreleasepool {
        SBIcon* const icon = made<SBIcon>();
        SBIconView* const view = madeView<SBIconView>();
        SBFolderIconImageView* const folder = madeView<SBFolderIconImageView>();
        EXPECT_EQ(handleOf<platform::SBIconView>(view)->icon(), nullptr);
        setVariable(view, "_icon", icon);
        setVariable(folder, "_icon", icon);
        clearJournal();
        EXPECT_EQ(nativeOf(handleOf<platform::SBIconView>(view)->icon()), static_cast<id>(icon));
        EXPECT_EQ(nativeOf(handleOf<platform::SBIconImageView>(folder)->icon()),
                  static_cast<id>(icon));
        EXPECT_EQ(nativeOf(handleOf<platform::SBFolderIconImageView>(folder)->icon()),
                  static_cast<id>(icon));
        EXPECT_EQ(journal(), (Strings{"-[SBIconView icon] SBIconView",
                                      "-[SBIconImageView icon] SBFolderIconImageView",
                                      "-[SBIconImageView icon] SBFolderIconImageView"}));
    }
    EXPECT_EQ(standins::allLiving(), Strings{});
}

TEST(SBFolderIconImageViews, TellWhetherTheyMove) {
    @autoreleasepool {
        const auto view =
            handleOf<platform::SBFolderIconImageView>(madeView<SBFolderIconImageView>());
        clearJournal();
        EXPECT_FALSE(view->isAnimating());
        setAnswer("-[SBFolderIconImageView isAnimating]", 1);
        EXPECT_TRUE(view->isAnimating());
        EXPECT_EQ(journal(),
                  (Strings{"-[SBFolderIconImageView isAnimating] SBFolderIconImageView",
                           "-[SBFolderIconImageView isAnimating] SBFolderIconImageView"}));
    }
}

TEST(SBIconListViews, ShowIconsInTheirOrder) {
    @autoreleasepool {
        SBIconListView* const native = madeView<SBIconListView>();
        const auto list = std::dynamic_pointer_cast<platform::SBIconListView>(wrapAny(native));
        ASSERT_NE(list, nullptr);
        EXPECT_TRUE(list->icons().empty());
        SBIcon* const first = made<SBApplicationIcon>();
        SBIcon* const second = made<SBIcon>();
        setVariable(native, "_icons", [NSArray arrayWithObjects:first, [NSNull null], second, nil]);
        const std::vector<platform::SBIconRef> icons = list->icons();
        ASSERT_EQ(icons.size(), 2U);
        EXPECT_EQ(nativeOf(icons[0]), static_cast<id>(first));
        EXPECT_EQ(nativeOf(icons[1]), static_cast<id>(second));
        setVariable(native, "_icons", @"no array");
        EXPECT_TRUE(list->icons().empty());
    }
    EXPECT_EQ(standins::allLiving(), Strings{});
}

TEST(SBDockViews, HaveARoomForTheListAndTakeABackground) {
    @autoreleasepool {
        SBDockView* const native = madeView<SBDockView>();
        const auto dock = handleOf<platform::SBDockView>(native);
        const platform::ImageViewRef background = views().imageView();
        setAnswer("-[SBDockView dockListViewFrame]", CGRect{{1, 2}, {3, 4}});
        clearJournal();
        EXPECT_EQ(dock->dockListViewFrame(), (platform::Rect{{1, 2}, {3, 4}}));
        dock->setBackgroundView(background);
        EXPECT_EQ(standins::variable(native, "_backgroundView"), nativeOf(background));
        dock->setBackgroundView(nullptr);
        EXPECT_EQ(standins::variable(native, "_backgroundView"), nil);
        EXPECT_EQ(journal(), (Strings{"-[SBDockView dockListViewFrame] SBDockView",
                                      "-[SBDockView setBackgroundView:] SBDockView UIImageView",
                                      "-[SBDockView setBackgroundView:] SBDockView nil"}));
    }
    EXPECT_EQ(standins::allLiving(), Strings{});
}

TEST(SBFloatingDockViews, HaveABackgroundOrNone) {
    @autoreleasepool {
        SBFloatingDockView* const native = madeView<SBFloatingDockView>();
        const auto dock = handleOf<platform::SBFloatingDockView>(native);
        clearJournal();
        EXPECT_EQ(dock->backgroundView(), nullptr);
        UIView* const background = madeView<UIView>();
        setVariable(native, "_backgroundView", background);
        EXPECT_EQ(nativeOf(dock->backgroundView()), static_cast<id>(background));
        setVariable(native, "_backgroundView", @"no view");
        EXPECT_EQ(dock->backgroundView(), nullptr);
        EXPECT_EQ(standins::journalOf("-[SBFloatingDockView backgroundView]").size(), 3U);
    }
}

TEST(SBIconListPageControls, AreAskedForTheSearchIndicator) {
    @autoreleasepool {
        const auto control =
            handleOf<platform::SBIconListPageControl>(madeView<SBIconListPageControl>());
        UIImage* const image = standins::imageOfPixels(3, 3);
        clearJournal();
        EXPECT_EQ(control->_searchIndicatorImage(false), nullptr);
        setAnswer("-[SBIconListPageControl _searchIndicatorImage:]", image);
        EXPECT_EQ(nativeOf(control->_searchIndicatorImage(true)), static_cast<id>(image));
        EXPECT_EQ(
            journal(),
            (Strings{"-[SBIconListPageControl _searchIndicatorImage:] SBIconListPageControl NO",
                     "-[SBIconListPageControl _searchIndicatorImage:] SBIconListPageControl YES"}));
    }
}

TEST(SBIconControllers, CloseFoldersWithoutACompletion) {
    @autoreleasepool {
        SBIconController* const native = made<SBIconController>();
        const auto folder = handleOf<platform::SBFloatyFolderView>(madeView<SBFloatyFolderView>());
        setAnswer("+[SBIconController sharedInstance]", native);
        clearJournal();
        const platform::SBIconControllerRef controller =
            springBoard().sharedInstance(wrapClass([SBIconController class]));
        ASSERT_EQ(nativeOf(controller), static_cast<id>(native));
        controller->_closeFolderControllerAnimatedWithCompletion(*folder, true);
        EXPECT_EQ(journal(),
                  (Strings{"+[SBIconController sharedInstance]",
                           "-[SBIconController _closeFolderController:animated:withCompletion:] "
                           "SBIconController SBFloatyFolderView YES nil"}));
    }
}

TEST(SBIconControllers, MayBeMissing) {
    @autoreleasepool {
        clearJournal();
        EXPECT_EQ(springBoard().sharedInstance(nullptr), nullptr);
        EXPECT_EQ(journal(), Strings{});
        EXPECT_EQ(springBoard().sharedInstance(wrapClass([SBIconController class])), nullptr);
    }
}

TEST(WGWidgetInfos, TellTheirIdentifier) {
    @autoreleasepool {
        WGWidgetInfo* const native = made<WGWidgetInfo>();
        const auto info = handleOf<platform::WGWidgetInfo>(native);
        clearJournal();
        EXPECT_EQ(info->widgetIdentifier(), std::nullopt);
        setVariable(native, "_widgetIdentifier", @"widget");
        EXPECT_EQ(info->widgetIdentifier(), "widget");
        EXPECT_EQ(journal(), (Strings{"-[WGWidgetInfo widgetIdentifier] WGWidgetInfo",
                                      "-[WGWidgetInfo widgetIdentifier] WGWidgetInfo"}));
    }
}

// As the engine reads them: by key from the docks, as a variable from the others.
TEST(SpringBoard, VariablesAreFoundByTheirNames) {
    @autoreleasepool {
        struct Variable {
            UIView* holder;
            const char* name;
        };

        const Variable variables[] = {
            {madeView<SBDockView>(), "_backgroundView"},
            {madeView<SBDockView>(), "_highlightView"},
            {madeView<SBFloatingDockPlatterView>(), "_backgroundView"},
            {madeView<SBFloatingDockPlatterView>(), "_shadowView"},
            {madeView<SBIconBadgeView>(), "_backgroundView"},
            {madeView<SBFolderIconImageView>(), "_backgroundView"},
            {madeView<SBFolderBackgroundView>(), "_blurView"},
        };
        for (const auto& [holder, name] : variables) {
            UIImageView* const view = made<UIImageView>();
            setVariable(holder, name, view);
            const auto handle = handleOf<platform::View>(holder);
            EXPECT_EQ(nativeOf(objcRuntime().valueForKey(*handle, name)), view) << name;
            EXPECT_NE(std::dynamic_pointer_cast<platform::ImageView>(
                          objcRuntime().instanceVariable(*handle, name)),
                      nullptr)
                << name;
        }
    }
    EXPECT_EQ(standins::allLiving(), Strings{});
}

TEST(SpringBoard, PassesOnWhatItsMessagesRaise) {
    @autoreleasepool {
        const auto icon = handleOf<platform::SBIcon>(made<SBIcon>());
        const auto view = handleOf<platform::SBIconView>(madeView<SBIconView>());
        const auto folder =
            handleOf<platform::SBFolderIconImageView>(madeView<SBFolderIconImageView>());
        const auto list = handleOf<platform::SBIconListView>(madeView<SBIconListView>());
        const auto dock = handleOf<platform::SBDockView>(madeView<SBDockView>());
        const auto floating =
            handleOf<platform::SBFloatingDockView>(madeView<SBFloatingDockView>());
        const auto control =
            handleOf<platform::SBIconListPageControl>(madeView<SBIconListPageControl>());
        const auto controller = handleOf<platform::SBIconController>(made<SBIconController>());
        const auto info = handleOf<platform::WGWidgetInfo>(made<WGWidgetInfo>());
        const Operation operations[] = {
            {"-[SBIcon leafIdentifier]", [&] { static_cast<void>(icon->leafIdentifier()); }},
            {"-[SBIcon nodeIdentifier]", [&] { static_cast<void>(icon->nodeIdentifier()); }},
            {"-[SBIcon uniqueIdentifier]", [&] { static_cast<void>(icon->uniqueIdentifier()); }},
            {"-[SBIconView icon]", [&] { static_cast<void>(view->icon()); }},
            {"-[SBIconImageView icon]", [&] { static_cast<void>(folder->icon()); }},
            {"-[SBFolderIconImageView isAnimating]",
             [&] { static_cast<void>(folder->isAnimating()); }},
            {"-[SBIconListView icons]", [&] { static_cast<void>(list->icons()); }},
            {"-[SBDockView dockListViewFrame]",
             [&] { static_cast<void>(dock->dockListViewFrame()); }},
            {"-[SBDockView setBackgroundView:]", [&] { dock->setBackgroundView(nullptr); }},
            {"-[SBFloatingDockView backgroundView]",
             [&] { static_cast<void>(floating->backgroundView()); }},
            {"-[SBIconListPageControl _searchIndicatorImage:]",
             [&] { static_cast<void>(control->_searchIndicatorImage(true)); }},
            {"-[SBIconController _closeFolderController:animated:withCompletion:]",
             [&] { controller->_closeFolderControllerAnimatedWithCompletion(*view, true); }},
            {"+[SBIconController sharedInstance]",
             [] {
                 static_cast<void>(
                     springBoard().sharedInstance(wrapClass([SBIconController class])));
             }},
            {"-[WGWidgetInfo widgetIdentifier]",
             [&] { static_cast<void>(info->widgetIdentifier()); }},
        };
        for (const Operation& operation : operations) {
            standins::raiseFrom(operation.method, "Refused");
            EXPECT_EQ(raisedBy(operation.run), "Refused") << operation.method;
        }
    }
}

// Every kind of view answers a view's messages, whatever it adds.
template <class Interface>
void expectViewMessages(id object) {
    const auto view = handleOf<Interface>(object);
    view->setTag(12);
    EXPECT_EQ(view->tag(), 12) << view->className();
    EXPECT_EQ(view->bounds(), (platform::Rect{{0, 0}, {50, 60}})) << view->className();
    view->addSubview(views().viewWithFrame({}));
    EXPECT_EQ(view->subviews().size(), 1U) << view->className();
    EXPECT_NE(view->layer(), nullptr) << view->className();
    EXPECT_EQ(nativeOf(platform::ObjectRef(view)), object);
}

TEST(SpringBoard, EveryViewIsOne) {
    @autoreleasepool {
        expectViewMessages<platform::SBIconImageView>(madeView<SBIconImageView>());
        expectViewMessages<platform::SBFolderIconImageView>(madeView<SBFolderIconImageView>());
        expectViewMessages<platform::SBIconView>(madeView<SBIconView>());
        expectViewMessages<platform::SBIconBadgeView>(madeView<SBIconBadgeView>());
        expectViewMessages<platform::SBIconLegibilityLabelView>(
            madeView<SBIconLegibilityLabelView>());
        expectViewMessages<platform::SBIconListView>(madeView<SBIconListView>());
        expectViewMessages<platform::SBDockView>(madeView<SBDockView>());
        expectViewMessages<platform::SBFloatingDockView>(madeView<SBFloatingDockView>());
        expectViewMessages<platform::SBFloatingDockPlatterView>(
            madeView<SBFloatingDockPlatterView>());
        expectViewMessages<platform::SBFloatyFolderView>(madeView<SBFloatyFolderView>());
        expectViewMessages<platform::SBFolderControllerBackgroundView>(
            madeView<SBFolderControllerBackgroundView>());
        expectViewMessages<platform::SBFolderBackgroundView>(madeView<SBFolderBackgroundView>());
        expectViewMessages<platform::SBIconListPageControl>(madeView<SBIconListPageControl>());
        expectViewMessages<platform::SBSwitcherAppSuggestionBannerView>(
            madeView<SBSwitcherAppSuggestionBannerView>());
        expectViewMessages<platform::UISwitchModernVisualElement>(
            madeView<UISwitchModernVisualElement>());
    }
    EXPECT_EQ(standins::allLiving(), Strings{});
}

TEST(SpringBoard, ObjectsWithoutMessagesAreHeld) {
    @autoreleasepool {
        EXPECT_EQ(handleOf<platform::SBHIconImageCache>(made<SBHIconImageCache>())->className(),
                  "SBHIconImageCache");
        EXPECT_EQ(
            handleOf<platform::SBFolderIconImageCache>(made<SBFolderIconImageCache>())->className(),
            "SBFolderIconImageCache");
        EXPECT_EQ(handleOf<platform::PKIconImageCache>(made<PKIconImageCache>())->className(),
                  "PKIconImageCache");
        EXPECT_EQ(handleOf<platform::SBUISound>(made<SBUISound>())->className(), "SBUISound");
    }
    EXPECT_EQ(standins::allLiving(), Strings{});
}

}  // namespace
}  // namespace velmoranth::device::springboard_test
