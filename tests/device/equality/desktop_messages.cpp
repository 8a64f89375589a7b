// The messages of the scenarios, as the desktop's runtime takes them.
#include "device/equality/desktop_side.h"

namespace velmoranth::equality {

void DesktopSide::addMainClass() {
    constexpr const char* kMain = "VelMoranth";
    for (const char* const selector : {"selectedTheme", "currentThemePlist", "DetectUserDevice"}) {
        answers_[std::string("+[VelMoranth ") + selector + "]"] = [=, this](const Step&) {
            return shownText(ask<NullableString>(kMain, selector));
        };
    }
    answers_["+[VelMoranth userChangedThemes]"] = [=, this](const Step&) {
        return std::string(ask<bool>(kMain, "userChangedThemes") ? "YES" : "NO");
    };
    for (const char* const selector : {"iconMask", "iconOverlay", "spotlightPageDot"}) {
        answers_[std::string("+[VelMoranth ") + selector + "]"] = [=, this](const Step&) {
            return shownImage(ask<ImageRef>(kMain, selector));
        };
    }
    for (const char* const selector : {"clearIconMask", "clearIconOverlay", "clearShadowImg"}) {
        answers_[std::string("+[VelMoranth ") + selector + "]"] = [=, this](const Step&) {
            ask<void>(kMain, selector);
            return std::string();
        };
    }
    for (const char* const selector : {"FolderImage", "badgeImage", "addShadowToIcon"}) {
        answers_[std::string("+[VelMoranth ") + selector + "]"] = [=, this](const Step&) {
            return shownView(ask<platform::ImageViewRef>(kMain, selector));
        };
    }
    answers_["+[VelMoranth sharedIconManager]"] = [=, this](const Step&) {
        return shownObject(ask<ObjectRef>(kMain, "sharedIconManager"));
    };
    answers_["+[VelMoranth pageDots:]"] = [=, this](const Step& step) {
        return shownImage(ask<ImageRef, bool>(kMain, "pageDots:", step.number != 0));
    };
    answers_["+[VelMoranth redrawIconWithOverlay:]"] = [=, this](const Step&) {
        return shownImage(ask<ImageRef, ImageRef>(kMain, "redrawIconWithOverlay:", answer_));
    };
    answers_["+[VelMoranth imageWithImage:scaledToSize:]"] = [=, this](const Step& step) {
        const auto side = static_cast<double>(step.number);
        return shownImage(ask<ImageRef, ImageRef, platform::Size>(
            kMain, "imageWithImage:scaledToSize:", answer_, {side, side / 2}));
    };
    answers_["+[VelMoranth colorWithHexString:]"] = [=, this](const Step& step) {
        const auto color =
            ask<platform::Color, NullableString>(kMain, "colorWithHexString:", textAt(step, 0));
        return shownNumber(color.red) + " " + shownNumber(color.green) + " " +
               shownNumber(color.blue) + " " + shownNumber(color.alpha);
    };
    answers_["+[VelMoranth contentTypeForImageData:]"] = [=, this](const Step& step) {
        std::optional<platform::Data> data;
        if (const NullableString text = textAt(step, 0)) {
            data.emplace(text->begin(), text->end());
        }
        return shownText(ask<NullableString, std::optional<platform::Data>>(
            kMain, "contentTypeForImageData:", data));
    };
    answers_["+[VelMoranth imageFromBundlePath:extract:extractionPath:]"] =
        [=, this](const Step& step) {
            return shownImage(ask<ImageRef, NullableString, bool, NullableString>(
                kMain, "imageFromBundlePath:extract:extractionPath:", textAt(step, 0), true,
                textAt(step, 1)));
        };
    answers_["+[VelMoranth VelmoranthImageDump:named:inBundle:]"] = [=, this](const Step& step) {
        ask<void, ImageRef, NullableString, NullableString>(
            kMain, "VelmoranthImageDump:named:inBundle:", answer_, textAt(step, 0),
            textAt(step, 1));
        return std::string();
    };
}

void DesktopSide::addImageMethods() {
    constexpr const char* kMain = "VelMoranth";
    answers_["+[VelMoranth searchforIconInIconBundlesWithLeafIdentifier:forImg:]"] =
        [=, this](const Step& step) {
            return shownImage(ask<ImageRef, NullableString, ImageRef>(
                kMain, "searchforIconInIconBundlesWithLeafIdentifier:forImg:", textAt(step, 0),
                answer_));
        };
    answers_["+[VelMoranth deviceUIImageNamed:fromBundle:originalUIImage:]"] =
        [=, this](const Step& step) {
            return shownImage(ask<ImageRef, NullableString, NullableString, ImageRef>(
                kMain, "deviceUIImageNamed:fromBundle:originalUIImage:", textAt(step, 0),
                textAt(step, 1), answer_));
        };
    answers_["+[VelMoranth deviceUIImageNamed:originalUIImage:]"] = [=, this](const Step& step) {
        return shownImage(ask<ImageRef, NullableString, ImageRef>(
            kMain, "deviceUIImageNamed:originalUIImage:", textAt(step, 0), answer_));
    };
    answers_["+[VelMoranth searchFolder:forImageStr:]"] = [=, this](const Step& step) {
        return shownImage(ask<ImageRef, NullableString, NullableString>(
            kMain, "searchFolder:forImageStr:", textAt(step, 0), textAt(step, 1)));
    };
    answers_["+[VelMoranth searchFolders:forImageString:]"] = [=, this](const Step& step) {
        std::vector<std::string> folders;
        for (std::size_t i = 1; i < step.texts.size() && step.texts[i] != nullptr; ++i) {
            folders.emplace_back(step.texts[i]);
        }
        return shownImage(ask<ImageRef, std::vector<std::string>, NullableString>(
            kMain, "searchFolders:forImageString:", folders, textAt(step, 0)));
    };
    answers_["+[VelMoranth hasSearchForImageNamedOrBundle:forImg:]"] = [=, this](const Step& step) {
        return std::string(
            ask<bool, NullableString, ImageRef>(
                kMain, "hasSearchForImageNamedOrBundle:forImg:", textAt(step, 0), answer_)
                ? "YES"
                : "NO");
    };
    for (const char* const selector : {"systemImageNamed:", "kitImageNamed:"}) {
        answers_[std::string("+[UIImage ") + selector + "]"] = [=, this](const Step& step) {
            return shownImage(ask<ImageRef, NullableString>("UIImage", selector, textAt(step, 0)));
        };
    }
    for (const char* const selector : {"_imageNamed:withTrait:", "_kitImageNamed:withTrait:"}) {
        answers_[std::string("+[UIImage ") + selector + "]"] = [=, this](const Step& step) {
            return shownImage(ask<ImageRef, NullableString, ObjectRef>("UIImage", selector,
                                                                       textAt(step, 0), nullptr));
        };
    }
    answers_["+[UIImage imageNamed:inBundle:]"] = [this](const Step& step) {
        return shownImage(ask<ImageRef, NullableString, platform::BundleRef>(
            "UIImage", "imageNamed:inBundle:", textAt(step, 0), bundleFor(step, 1)));
    };
    for (const char* const selector : {"imageNamed:inBundle:withConfiguration:",
                                       "imageNamed:inBundle:compatibleWithTraitCollection:"}) {
        answers_[std::string("+[UIImage ") + selector + "]"] = [=, this](const Step& step) {
            return shownImage(ask<ImageRef, NullableString, platform::BundleRef, ObjectRef>(
                "UIImage", selector, textAt(step, 0), bundleFor(step, 1), nullptr));
        };
    }
    answers_["+[UIImage imageWithContentsOfCPBitmapFile:flags:]"] = [this](const Step& step) {
        return shownImage(ask<ImageRef, NullableString, int>(
            "UIImage", "imageWithContentsOfCPBitmapFile:flags:", textAt(step, 0), 0));
    };
    answers_["+[WeatherImageLoader conditionImageNamed:style:]"] = [this](const Step& step) {
        return shownImage(ask<ImageRef, NullableString, long long>(
            "WeatherImageLoader", "conditionImageNamed:style:", textAt(step, 0), step.number));
    };
}

void DesktopSide::addIconMethods() {
    answers_["+[UIImage _applicationIconImageForBundleIdentifier:format:scale:]"] =
        [this](const Step& step) {
            return shownImage(ask<ImageRef, NullableString, int, double>(
                "UIImage", "_applicationIconImageForBundleIdentifier:format:scale:",
                textAt(step, 0), static_cast<int>(step.number), kGivenScale));
        };
    answers_["+[APWUtil iconForBundleIdentifier:]"] = [this](const Step& step) {
        return shownImage(
            ask<ImageRef, NullableString>("APWUtil", "iconForBundleIdentifier:", textAt(step, 0)));
    };
    answers_["-[PKIconImageCache imageForKey:]"] = [this](const Step& step) {
        PlainObject<platform::PKIconImageCache> cache("PKIconImageCache");
        return shownImage(
            device_.runtime.send<ImageRef, NullableString>(cache, "imageForKey:", textAt(step, 0)));
    };
    answers_["-[SBApplicationIcon getUnmaskedIconImage:]"] = [this](const Step& step) {
        Icon icon(textAt(step, 0));
        return shownImage(device_.runtime.send<ImageRef, int>(
            icon, "getUnmaskedIconImage:", static_cast<int>(step.number)));
    };
    for (const char* const selector : {"imageForIcon:", "unmaskedImageForIcon:"}) {
        answers_[std::string("-[SBHIconImageCache ") + selector + "]"] = [=,
                                                                          this](const Step& step) {
            PlainObject<platform::SBHIconImageCache> cache("SBHIconImageCache");
            return shownImage(device_.runtime.send<ImageRef, platform::SBIconRef>(cache, selector,
                                                                                  iconFor(step)));
        };
    }
    answers_["-[SBIconImageView contentsImage]"] = [this](const Step& step) {
        const auto view = std::make_shared<IconHolder<platform::SBIconImageView>>("SBIconImageView",
                                                                                  iconFor(step));
        return shownImage(device_.runtime.send<ImageRef>(*view, "contentsImage"));
    };
}

void DesktopSide::addFileManager() {
    constexpr const char* kPanel = "VelmoranthFileManager";
    for (const char* const selector : {"NoUserSettingCreateThemeNow", "finshedSelfAlert"}) {
        answers_[std::string("+[VelmoranthFileManager ") + selector + "]"] = [=,
                                                                              this](const Step&) {
            ask<void>(kPanel, selector);
            return std::string();
        };
    }
    answers_["+[VelmoranthFileManager sharedFileManager]"] = [=, this](const Step&) {
        return shownObject(ask<ObjectRef>(kPanel, "sharedFileManager"));
    };
    answers_["+[VelmoranthFileManager saveCurrentSettinginFolderWithName:]"] =
        [=, this](const Step& step) {
            return std::string(ask<bool, NullableString>(
                                   kPanel, "saveCurrentSettinginFolderWithName:", textAt(step, 0))
                                   ? "YES"
                                   : "NO");
        };
    for (const char* const selector : {"renameFileFrom:to:", "deleteFileFromDevice:fromDir:",
                                       "overwriteFontFilesInDir:fromTheme:"}) {
        answers_[std::string("+[VelmoranthFileManager ") + selector + "]"] =
            [=, this](const Step& step) {
                return std::string(ask<bool, NullableString, NullableString>(
                                       kPanel, selector, textAt(step, 0), textAt(step, 1))
                                       ? "YES"
                                       : "NO");
            };
    }
    answers_["+[VelmoranthFileManager ShowSuccesView:]"] = [=, this](const Step& step) {
        ask<void, NullableString>(kPanel, "ShowSuccesView:", textAt(step, 0));
        return std::string();
    };
}

void DesktopSide::addSounds() {
    const auto someone = [this](const Step& step) {
        return step.given == Given::none ? nullptr : sounds();
    };
    for (const char* const selector :
         {"initClass:", "PlayButtonClick:", "PlaySlide:", "PlaySlideWithClick:", "PlayError:",
          "PlayReboot:", "PlaySuccess:", "PlayOn:", "PlayOff:"}) {
        answers_[std::string("-[Sounds ") + selector + "]"] = [=, this](const Step& step) {
            device_.runtime.send<void, ObjectRef>(*sounds(), selector, someone(step));
            return std::string();
        };
    }
    answers_["-[VelMoranth initClass:]"] = [=, this](const Step& step) {
        device_.runtime.send<void, ObjectRef>(*manager(), "initClass:", someone(step));
        return std::string();
    };
    answers_["-[VelMoranth playUISound:]"] = [this](const Step& step) {
        device_.runtime.send<void, std::int64_t>(*manager(), "playUISound:", step.number);
        return std::string();
    };
    answers_["-[VelMoranth playsystemSound:]"] = [this](const Step& step) {
        device_.runtime.send<void, std::uint64_t>(
            *manager(), "playsystemSound:", static_cast<std::uint64_t>(step.number));
        return std::string();
    };
    answers_["-[_UIFeedback play]"] = [this](const Step& step) {
        Feedback feedback(static_cast<std::uint32_t>(step.number));
        device_.runtime.send<void>(feedback, "play");
        return std::string();
    };
    answers_["+[SBUISound soundWithFeedbackEventType:]"] = [this](const Step& step) {
        return shownObject(ask<platform::SBUISoundRef, std::uint64_t>(
            "SBUISound", "soundWithFeedbackEventType:", static_cast<std::uint64_t>(step.number)));
    };
}

void DesktopSide::addHomeScreen() {
    constexpr const char* kLabel = "SBIconLegibilityLabelView";
    answers_["-[SBIconLegibilityLabelView isHidden]"] = [=, this](const Step&) {
        HomeScreenView<platform::SBIconLegibilityLabelView> label(kLabel);
        return std::string(device_.runtime.send<bool>(label, "isHidden") ? "YES" : "NO");
    };
    answers_["-[SBIconLegibilityLabelView alpha]"] = [=, this](const Step&) {
        HomeScreenView<platform::SBIconLegibilityLabelView> label(kLabel);
        return shownNumber(device_.runtime.send<double>(label, "alpha"));
    };
    answers_["-[SBIconBadgeView layoutSubviews]"] = [this](const Step&) {
        const auto badge =
            std::make_shared<HomeScreenView<platform::SBIconBadgeView>>("SBIconBadgeView");
        badgeBackground_ = std::make_shared<desktop::DesktopImageView>();
        device_.runtime.send<void>(*badge, "layoutSubviews");
        return "alpha " + shownNumber(badge->desktopLayer()->appearance.opacity) + " over " +
               shownImage(badgeBackground_->image());
    };
    answers_["-[SBIconView layoutSubviews]"] = [this](const Step& step) {
        const auto view =
            std::make_shared<IconHolder<platform::SBIconView>>("SBIconView", iconFor(step));
        device_.runtime.send<void>(*view, "layoutSubviews");
        const auto& appearance = view->desktopLayer()->appearance;
        std::string text =
            "tag " + std::to_string(view->tag()) + " shadow " +
            shownNumber(appearance.shadow.opacity) + " " + shownNumber(appearance.shadow.offset.x) +
            " " + shownNumber(appearance.shadow.offset.y) + " " +
            shownNumber(appearance.shadow.radius) + " path " +
            (appearance.shadowPath ? shownFrame(*appearance.shadowPath) : std::string("none"));
        for (const platform::ViewRef& subview : view->subviews()) {
            text += ", " + shownView(subview);
        }
        return text;
    };
}

}  // namespace velmoranth::equality
