#import "device/standins/views.h"

#include "platform/core_graphics.h"

#include "device/platform/exceptions.h"
#include "device/platform/handles.h"
#include "device/platform/services.h"
#import "device/standins/controllers.h"
#import "device/standins/images.h"
#import "device/standins/springboard.h"
#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <memory>

namespace velmoranth::device::views_test {
namespace {

using platform::ViewRef;
using standins::clearJournal;
using standins::journal;
using standins::living;
using standins::raiseFrom;

constexpr platform::Rect kFrame{{1, 2}, {30, 40}};

UIView* native(const ViewRef& view) {
    return static_cast<UIView*>(nativeOf(view));
}

TEST(Views, AreMadeByTheInitialisersNamed) {
    @autoreleasepool {
        const auto image = wrap<platform::Image>(standins::imageOfPixels(20, 10, 2));
        clearJournal();
        const ViewRef view = views().viewWithFrame(kFrame);
        const platform::LabelRef label = views().labelWithFrame(kFrame);
        const platform::ImageViewRef empty = views().imageView();
        const platform::ImageViewRef framed = views().imageViewWithFrame(kFrame);
        const platform::ImageViewRef showing = views().imageViewWithImage(image);
        const platform::ImageViewRef showingNil = views().imageViewWithImage(nullptr);
        const Strings made = standins::journalOf("-[");
        EXPECT_EQ(standins::journalOf("-[UIView init"),
                  (Strings{"-[UIView initWithFrame:] (1, 2) 30×40"}));
        EXPECT_EQ(standins::journalOf("-[UILabel"),
                  (Strings{"-[UILabel initWithFrame:] (1, 2) 30×40"}));
        EXPECT_EQ(standins::journalOf("-[UIImageView"),
                  (Strings{"-[UIImageView init]", "-[UIImageView initWithFrame:] (1, 2) 30×40",
                           "-[UIImageView initWithImage:] 10×5 @2x",
                           "-[UIImageView initWithImage:] nil"}));
        EXPECT_EQ(view->className(), "UIView");
        EXPECT_EQ(label->className(), "UILabel");
        EXPECT_EQ(framed->frame(), kFrame);
        EXPECT_EQ(showing->frame(), (platform::Rect{{0, 0}, {10, 5}}));
        EXPECT_EQ(nativeOf(showing->image()), nativeOf(image));
        EXPECT_EQ(showingNil->frame(), platform::Rect{});
        EXPECT_EQ(showingNil->image(), nullptr);
        EXPECT_EQ(living("UIImageView"), 4);
    }
    EXPECT_EQ(standins::allLiving(), Strings{});
}

TEST(Views, SendEveryMessageAsItIsNamed) {
    @autoreleasepool {
        const ViewRef view = views().viewWithFrame({});
        clearJournal();
        view->setTag(-3);
        view->setFrame(kFrame);
        view->setClipsToBounds(true);
        view->setAlpha(0.25);
        view->setHidden(true);
        view->setHidden(false);
        view->removeFromSuperview();
        EXPECT_EQ(view->tag(), -3);
        EXPECT_EQ(view->frame(), kFrame);
        EXPECT_EQ(view->bounds(), (platform::Rect{{0, 0}, {30, 40}}));
        EXPECT_NE(view->layer(), nullptr);
        EXPECT_TRUE(view->subviews().empty());
        EXPECT_EQ(
            journal(),
            (Strings{"-[UIView setTag:] UIView -3", "-[UIView setFrame:] UIView #-3 (1, 2) 30×40",
                     "-[UIView setClipsToBounds:] UIView #-3 YES",
                     "-[UIView setAlpha:] UIView #-3 0.25", "-[UIView setHidden:] UIView #-3 YES",
                     "-[UIView setHidden:] UIView #-3 NO",
                     "-[UIView removeFromSuperview] UIView #-3", "-[UIView tag] UIView #-3",
                     "-[UIView frame] UIView #-3", "-[UIView bounds] UIView #-3",
                     "-[UIView layer] UIView #-3", "-[UIView subviews] UIView #-3"}));
    }
}

TEST(Views, TagThatIsNoIntIsNoneOfTheEngine) {
    @autoreleasepool {
        const ViewRef view = views().viewWithFrame({});
        native(view)->_tag = (NSInteger{1} << 32) + 5;
        EXPECT_EQ(view->tag(), INT_MAX);
        native(view)->_tag = -(NSInteger{1} << 32) + 5;
        EXPECT_EQ(view->tag(), INT_MIN);
    }
}

TEST(Views, ColoursWithANameAreAskedForByIt) {
    @autoreleasepool {
        const ViewRef view = views().viewWithFrame({});
        clearJournal();
        view->setBackgroundColor(platform::kClearColor);
        view->setBackgroundColor(platform::kBlackColor);
        view->setBackgroundColor(platform::kWhiteColor);
        view->setBackgroundColor(platform::kGrayColor);
        view->setBackgroundColor({0.25, 0.5, 0.75, 0.125});
        EXPECT_EQ(standins::journalOf("+[UIColor"),
                  (Strings{"+[UIColor clearColor]", "+[UIColor blackColor]",
                           "+[UIColor whiteColor]", "+[UIColor grayColor]",
                           "+[UIColor colorWithRed:green:blue:alpha:] 0.25 0.5 0.75 0.125"}));
        EXPECT_EQ(standins::journalOf("-[UIView setBackgroundColor:]"),
                  (Strings{"-[UIView setBackgroundColor:] UIView #00000000",
                           "-[UIView setBackgroundColor:] UIView #000000",
                           "-[UIView setBackgroundColor:] UIView #FFFFFF",
                           "-[UIView setBackgroundColor:] UIView #808080",
                           "-[UIView setBackgroundColor:] UIView #4080BF20"}));
        EXPECT_EQ(standins::exactly(native(view)->_backgroundColor->_color).text,
                  "(0.25, 0.5, 0.75, 0.125)");
    }
    EXPECT_EQ(standins::allLiving(), Strings{});
}

TEST(Views, SubviewsAreInTheirOrderAndOfTheirKind) {
    @autoreleasepool {
        const ViewRef view = views().viewWithFrame({});
        const ViewRef plain = views().viewWithFrame({});
        const platform::LabelRef label = views().labelWithFrame({});
        const platform::ImageViewRef image = views().imageView();
        clearJournal();
        view->addSubview(plain);
        view->insertSubviewAtIndex(label, 0);
        view->insertSubviewAtIndex(image, SIZE_MAX);
        EXPECT_EQ(journal(), (Strings{"-[UIView addSubview:] UIView UIView",
                                      "-[UIView insertSubview:atIndex:] UIView UILabel 0",
                                      "-[UIView insertSubview:atIndex:] UIView UIImageView " +
                                          std::to_string(NSIntegerMax)}));
        const std::vector<ViewRef> subviews = view->subviews();
        ASSERT_EQ(subviews.size(), 3U);
        EXPECT_EQ(nativeOf(subviews[0]), nativeOf(label));
        EXPECT_NE(std::dynamic_pointer_cast<platform::Label>(subviews[0]), nullptr);
        EXPECT_EQ(nativeOf(subviews[1]), nativeOf(plain));
        EXPECT_EQ(nativeOf(subviews[2]), nativeOf(image));
        EXPECT_NE(std::dynamic_pointer_cast<platform::ImageView>(subviews[2]), nullptr);
        subviews[1]->removeFromSuperview();
        EXPECT_EQ(view->subviews().size(), 2U);
    }
    EXPECT_EQ(standins::allLiving(), Strings{});
}

TEST(Views, NilIsNotAdded) {
    @autoreleasepool {
        const ViewRef view = views().viewWithFrame({});
        clearJournal();
        view->addSubview(nullptr);
        view->insertSubviewAtIndex(nullptr, 0);
        view->addGestureRecognizer(nullptr);
        EXPECT_EQ(journal(), Strings{});
    }
}

TEST(Views, WhatIsNoViewAmongTheSubviewsIsLeftOut) {
    @autoreleasepool {
        const ViewRef view = views().viewWithFrame({});
        const ViewRef child = views().viewWithFrame({});
        [native(view)->_subviews addObject:@"a string"];
        [native(view)->_subviews addObject:standins::imageOfPixels(1, 1)];
        view->addSubview(child);
        const std::vector<ViewRef> subviews = view->subviews();
        ASSERT_EQ(subviews.size(), 1U);
        EXPECT_EQ(nativeOf(subviews[0]), nativeOf(child));
    }
}

TEST(Views, AreFoundByTag) {
    @autoreleasepool {
        const ViewRef view = views().viewWithFrame({});
        const platform::ImageViewRef image = views().imageView();
        image->setTag(7);
        view->addSubview(image);
        clearJournal();
        const ViewRef found = view->viewWithTag(7);
        EXPECT_EQ(nativeOf(found), nativeOf(image));
        EXPECT_NE(std::dynamic_pointer_cast<platform::ImageView>(found), nullptr);
        EXPECT_EQ(view->viewWithTag(8), nullptr);
        EXPECT_EQ(journal(),
                  (Strings{"-[UIView viewWithTag:] UIView 7", "-[UIView viewWithTag:] UIView 8"}));
    }
}

TEST(Views, AreHeldByTheirHandlesAlone) {
    @autoreleasepool {
        ViewRef view = views().viewWithFrame({});
        EXPECT_EQ([native(view) retainCount], 1U);
        ViewRef again = wrap<platform::View>(native(view));
        view.reset();
        EXPECT_EQ(living("UIView"), 1);
        again.reset();
        EXPECT_EQ(living("UIView"), 0);
        EXPECT_EQ(living("CALayer"), 0);
    }
}

TEST(Views, ObjectsInTheInitialisersPlaceAreTaken) {
    @autoreleasepool {
        UIView* const other = [[[UIView alloc] initWithFrame:CGRect{}] autorelease];
        standins::setAnswer("-[UIView initWithFrame:]", other);
        EXPECT_EQ(nativeOf(views().viewWithFrame(kFrame)), static_cast<id>(other));
        standins::setAnswer("-[UIView initWithFrame:]", nil);
        EXPECT_EQ(nativeOf(views().viewWithFrame(kFrame)), nil);
        EXPECT_EQ(nativeOf(views().imageViewWithFrame(kFrame)), nil);
        EXPECT_EQ(living("UIImageView"), 0);
        EXPECT_EQ(living("UIView"), 1);
    }
    EXPECT_EQ(standins::allLiving(), Strings{});
}

TEST(Views, PassOnWhatTheirMessagesRaise) {
    @autoreleasepool {
        const ViewRef view = views().viewWithFrame({});
        const ViewRef other = views().viewWithFrame({});
        const platform::LabelRef label = views().labelWithFrame({});
        const platform::ImageViewRef image = views().imageView();
        const auto tap = views().tapGestureRecognizer(*view, "handleTap");
        const Operation operations[] = {
            {"-[UIView tag]", [&] { static_cast<void>(view->tag()); }},
            {"-[UIView setTag:]", [&] { view->setTag(1); }},
            {"-[UIView frame]", [&] { static_cast<void>(view->frame()); }},
            {"-[UIView setFrame:]", [&] { view->setFrame({}); }},
            {"-[UIView bounds]", [&] { static_cast<void>(view->bounds()); }},
            {"-[UIView subviews]", [&] { static_cast<void>(view->subviews()); }},
            {"-[UIView addSubview:]", [&] { view->addSubview(other); }},
            {"-[UIView insertSubview:atIndex:]", [&] { view->insertSubviewAtIndex(other, 0); }},
            {"-[UIView removeFromSuperview]", [&] { view->removeFromSuperview(); }},
            {"-[UIView viewWithTag:]", [&] { static_cast<void>(view->viewWithTag(1)); }},
            {"-[UIView setBackgroundColor:]", [&] { view->setBackgroundColor({}); }},
            {"-[UIView setClipsToBounds:]", [&] { view->setClipsToBounds(true); }},
            {"-[UIView setAlpha:]", [&] { view->setAlpha(1); }},
            {"-[UIView setHidden:]", [&] { view->setHidden(true); }},
            {"-[UIView addGestureRecognizer:]", [&] { view->addGestureRecognizer(tap); }},
            {"-[UIView layer]", [&] { static_cast<void>(view->layer()); }},
            {"-[UIView initWithFrame:]", [&] { static_cast<void>(views().viewWithFrame({})); }},
            {"-[UIImageView initWithImage:]",
             [&] { static_cast<void>(views().imageViewWithImage(nullptr)); }},
            {"-[UIGestureRecognizer initWithTarget:action:]",
             [&] { static_cast<void>(views().tapGestureRecognizer(*view, "x")); }},
            {"-[UIImageView image]", [&] { static_cast<void>(image->image()); }},
            {"-[UIImageView setImage:]", [&] { image->setImage(nullptr); }},
            {"-[UILabel setText:]", [&] { label->setText("x"); }},
        };
        for (const Operation& operation : operations) {
            raiseFrom(operation.method, "Refused");
            EXPECT_EQ(raisedBy(operation.run), "Refused") << operation.method;
            standins::raiseNoMore(operation.method);
            EXPECT_EQ(raisedBy(operation.run), "") << operation.method;
        }
    }
}

TEST(ImageViews, ShowAnImageOrNone) {
    @autoreleasepool {
        const platform::ImageViewRef view = views().imageView();
        const auto image = wrap<platform::Image>(standins::imageOfPixels(2, 2));
        clearJournal();
        view->setImage(image);
        EXPECT_EQ(nativeOf(view->image()), nativeOf(image));
        view->setImage(nullptr);
        EXPECT_EQ(view->image(), nullptr);
        EXPECT_EQ(
            standins::journalOf("-[UIImageView"),
            (Strings{"-[UIImageView setImage:] UIImageView 2×2 @1x",
                     "-[UIImageView image] UIImageView", "-[UIImageView setImage:] UIImageView nil",
                     "-[UIImageView image] UIImageView"}));
    }
    EXPECT_EQ(standins::allLiving(), Strings{});
}

TEST(Labels, SendEveryMessageAsItIsNamed) {
    @autoreleasepool {
        standins::addFont("Some-Font");
        const platform::LabelRef label = views().labelWithFrame({});
        const auto font = wrap<platform::Font>([UIFont fontWithName:@"Some-Font" size:12]);
        clearJournal();
        label->setFont(font);
        label->setFont(nullptr);
        label->setTextAlignment(platform::TextAlignment::natural);
        label->setText("Übermorgen");
        label->setText(std::nullopt);
        label->setTextColor(platform::kWhiteColor);
        label->setShadowColor({0, 0, 1});
        label->setShadowOffset({0, -2});
        EXPECT_EQ(journal(),
                  (Strings{"-[UILabel setFont:] UILabel UIFont", "-[UILabel setFont:] UILabel nil",
                           "-[UILabel setTextAlignment:] UILabel 4",
                           "-[UILabel setText:] UILabel \"Übermorgen\"",
                           "-[UILabel setText:] UILabel nil", "+[UIColor whiteColor]",
                           "-[UILabel setTextColor:] UILabel #FFFFFF",
                           "+[UIColor colorWithRed:green:blue:alpha:] 0 0 1 1",
                           "-[UILabel setShadowColor:] UILabel #0000FF",
                           "-[UILabel setShadowOffset:] UILabel 0×-2"}));
    }
    EXPECT_EQ(standins::allLiving(), Strings{});
}

}  // namespace
}  // namespace velmoranth::device::views_test
