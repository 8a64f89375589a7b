// The messages of the scenarios, as they are sent to the phone's classes and the library's.
#import "device/equality/device_side.h"

namespace velmoranth::equality {

void DeviceSide::addMainClass() {
    answers_["+[VelMoranth selectedTheme]"] = [](const Step&) {
        return shownText(textOf([mainClass() selectedTheme]));
    };
    answers_["+[VelMoranth currentThemePlist]"] = [](const Step&) {
        return shownText(textOf([mainClass() currentThemePlist]));
    };
    answers_["+[VelMoranth DetectUserDevice]"] = [](const Step&) {
        return shownText(textOf([mainClass() DetectUserDevice]));
    };
    answers_["+[VelMoranth userChangedThemes]"] = [](const Step&) {
        return shownBool([mainClass() userChangedThemes]);
    };
    answers_["+[VelMoranth sharedIconManager]"] = [](const Step&) {
        return shownObject([mainClass() sharedIconManager]);
    };
    answers_["+[VelMoranth contentTypeForImageData:]"] = [](const Step& step) {
        NSData* data = nil;
        if (const Text text = step.texts[0]) {
            data = [NSData dataWithBytes:text length:std::string_view(text).size()];
        }
        return shownText(textOf([mainClass() contentTypeForImageData:data]));
    };
    answers_["+[VelMoranth imageFromBundlePath:extract:extractionPath:]"] =
        [this](const Step& step) {
            return shownImage([mainClass() imageFromBundlePath:textAt(step, 0)
                                                       extract:YES
                                                extractionPath:textAt(step, 1)]);
        };
    answers_["+[VelMoranth VelmoranthImageDump:named:inBundle:]"] = [this](const Step& step) {
        [mainClass() VelmoranthImageDump:current_ named:textAt(step, 0) inBundle:textAt(step, 1)];
        return std::string();
    };
    addEffects();
}

void DeviceSide::addEffects() {
    answers_["+[VelMoranth iconMask]"] = [this](const Step&) {
        return shownImage([mainClass() iconMask]);
    };
    answers_["+[VelMoranth iconOverlay]"] = [this](const Step&) {
        return shownImage([mainClass() iconOverlay]);
    };
    answers_["+[VelMoranth spotlightPageDot]"] = [this](const Step&) {
        return shownImage([mainClass() spotlightPageDot]);
    };
    answers_["+[VelMoranth clearIconMask]"] = [](const Step&) {
        [mainClass() clearIconMask];
        return std::string();
    };
    answers_["+[VelMoranth clearIconOverlay]"] = [](const Step&) {
        [mainClass() clearIconOverlay];
        return std::string();
    };
    answers_["+[VelMoranth clearShadowImg]"] = [](const Step&) {
        [mainClass() clearShadowImg];
        return std::string();
    };
    answers_["+[VelMoranth FolderImage]"] = [this](const Step&) {
        return shownView([mainClass() FolderImage]);
    };
    answers_["+[VelMoranth badgeImage]"] = [this](const Step&) {
        return shownView([mainClass() badgeImage]);
    };
    answers_["+[VelMoranth addShadowToIcon]"] = [this](const Step&) {
        return shownView([mainClass() addShadowToIcon]);
    };
    answers_["+[VelMoranth pageDots:]"] = [this](const Step& step) {
        return shownImage([mainClass() pageDots:step.number != 0]);
    };
    answers_["+[VelMoranth redrawIconWithOverlay:]"] = [this](const Step&) {
        return shownImage([mainClass() redrawIconWithOverlay:current_]);
    };
    answers_["+[VelMoranth imageWithImage:scaledToSize:]"] = [this](const Step& step) {
        const auto side = static_cast<CGFloat>(step.number);
        return shownImage([mainClass() imageWithImage:current_
                                         scaledToSize:CGSize{side, side / 2}]);
    };
    answers_["+[VelMoranth colorWithHexString:]"] = [](const Step& step) {
        UIColor* const color = [mainClass() colorWithHexString:textAt(step, 0)];
        const struct CGColor& parts = *[color CGColor];
        return shownNumber(parts.red) + " " + shownNumber(parts.green) + " " +
               shownNumber(parts.blue) + " " + shownNumber(parts.alpha);
    };
}

void DeviceSide::addImageMethods() {
    answers_["+[VelMoranth searchforIconInIconBundlesWithLeafIdentifier:forImg:]"] =
        [this](const Step& step) {
            return shownImage([mainClass()
                searchforIconInIconBundlesWithLeafIdentifier:textAt(step, 0)
                                                      forImg:current_]);
        };
    answers_["+[VelMoranth deviceUIImageNamed:fromBundle:originalUIImage:]"] =
        [this](const Step& step) {
            return shownImage([mainClass() deviceUIImageNamed:textAt(step, 0)
                                                   fromBundle:textAt(step, 1)
                                              originalUIImage:current_]);
        };
    answers_["+[VelMoranth deviceUIImageNamed:originalUIImage:]"] = [this](const Step& step) {
        return shownImage([mainClass() deviceUIImageNamed:textAt(step, 0)
                                          originalUIImage:current_]);
    };
    answers_["+[VelMoranth searchFolder:forImageStr:]"] = [this](const Step& step) {
        return shownImage([mainClass() searchFolder:textAt(step, 0) forImageStr:textAt(step, 1)]);
    };
    answers_["+[VelMoranth searchFolders:forImageString:]"] = [this](const Step& step) {
        NSMutableArray* const folders = [NSMutableArray array];
        for (std::size_t i = 1; i < step.texts.size() && step.texts[i] != nullptr; ++i) {
            [folders addObject:textAt(step, i)];
        }
        return shownImage([mainClass() searchFolders:folders forImageString:textAt(step, 0)]);
    };
    answers_["+[VelMoranth hasSearchForImageNamedOrBundle:forImg:]"] = [this](const Step& step) {
        return shownBool([mainClass() hasSearchForImageNamedOrBundle:textAt(step, 0)
                                                              forImg:current_]);
    };
    answers_["+[UIImage systemImageNamed:]"] = [this](const Step& step) {
        return shownImage([UIImage systemImageNamed:textAt(step, 0)]);
    };
    answers_["+[UIImage kitImageNamed:]"] = [this](const Step& step) {
        return shownImage([UIImage kitImageNamed:textAt(step, 0)]);
    };
    answers_["+[UIImage _imageNamed:withTrait:]"] = [this](const Step& step) {
        return shownImage([UIImage _imageNamed:textAt(step, 0) withTrait:nil]);
    };
    answers_["+[UIImage _kitImageNamed:withTrait:]"] = [this](const Step& step) {
        return shownImage([UIImage _kitImageNamed:textAt(step, 0) withTrait:nil]);
    };
    answers_["+[UIImage imageNamed:inBundle:]"] = [this](const Step& step) {
        return shownImage([UIImage imageNamed:textAt(step, 0) inBundle:bundleFor(step, 1)]);
    };
    answers_["+[UIImage imageNamed:inBundle:withConfiguration:]"] = [this](const Step& step) {
        return shownImage([UIImage imageNamed:textAt(step, 0)
                                     inBundle:bundleFor(step, 1)
                            withConfiguration:nil]);
    };
    answers_["+[UIImage imageNamed:inBundle:compatibleWithTraitCollection:]"] =
        [this](const Step& step) {
            return shownImage([UIImage imageNamed:textAt(step, 0)
                                         inBundle:bundleFor(step, 1)
                    compatibleWithTraitCollection:nil]);
        };
    answers_["+[UIImage imageWithContentsOfCPBitmapFile:flags:]"] = [this](const Step& step) {
        return shownImage([UIImage imageWithContentsOfCPBitmapFile:textAt(step, 0) flags:0]);
    };
    answers_["+[WeatherImageLoader conditionImageNamed:style:]"] = [this](const Step& step) {
        return shownImage([WeatherImageLoader
            conditionImageNamed:textAt(step, 0)
                          style:static_cast<NSInteger>(step.number)]);
    };
}

void DeviceSide::addIconMethods() {
    answers_["+[UIImage _applicationIconImageForBundleIdentifier:format:scale:]"] =
        [this](const Step& step) {
            return shownImage([UIImage
                _applicationIconImageForBundleIdentifier:textAt(step, 0)
                                                  format:static_cast<int>(step.number)
                                                   scale:kGivenScale]);
        };
    answers_["+[APWUtil iconForBundleIdentifier:]"] = [this](const Step& step) {
        return shownImage([APWUtil iconForBundleIdentifier:textAt(step, 0)]);
    };
    answers_["-[PKIconImageCache imageForKey:]"] = [this](const Step& step) {
        PKIconImageCache* const cache = [[[PKIconImageCache alloc] init] autorelease];
        return shownImage([cache imageForKey:textAt(step, 0)]);
    };
    answers_["-[SBApplicationIcon getUnmaskedIconImage:]"] = [this](const Step& step) {
        return shownImage(
            [iconWith(textAt(step, 0)) getUnmaskedIconImage:static_cast<int>(step.number)]);
    };
    answers_["-[SBHIconImageCache imageForIcon:]"] = [this](const Step& step) {
        SBHIconImageCache* const cache = [[[SBHIconImageCache alloc] init] autorelease];
        return shownImage([cache imageForIcon:iconFor(step)]);
    };
    answers_["-[SBHIconImageCache unmaskedImageForIcon:]"] = [this](const Step& step) {
        SBHIconImageCache* const cache = [[[SBHIconImageCache alloc] init] autorelease];
        return shownImage([cache unmaskedImageForIcon:iconFor(step)]);
    };
    answers_["-[SBIconImageView contentsImage]"] = [this](const Step& step) {
        auto* const view = viewOf<SBIconImageView>([SBIconImageView class]);
        setVariable(view, "_icon", iconFor(step));
        return shownImage([view contentsImage]);
    };
}

void DeviceSide::addFileManager() {
    answers_["+[VelmoranthFileManager NoUserSettingCreateThemeNow]"] = [](const Step&) {
        [panel() NoUserSettingCreateThemeNow];
        return std::string();
    };
    answers_["+[VelmoranthFileManager finshedSelfAlert]"] = [](const Step&) {
        [panel() finshedSelfAlert];
        return std::string();
    };
    answers_["+[VelmoranthFileManager ShowSuccesView:]"] = [](const Step& step) {
        [panel() ShowSuccesView:textAt(step, 0)];
        return std::string();
    };
    answers_["+[VelmoranthFileManager sharedFileManager]"] = [](const Step&) {
        return shownObject([panel() sharedFileManager]);
    };
    answers_["+[VelmoranthFileManager saveCurrentSettinginFolderWithName:]"] =
        [](const Step& step) {
            return shownBool([panel() saveCurrentSettinginFolderWithName:textAt(step, 0)]);
        };
    answers_["+[VelmoranthFileManager renameFileFrom:to:]"] = [](const Step& step) {
        return shownBool([panel() renameFileFrom:textAt(step, 0) to:textAt(step, 1)]);
    };
    answers_["+[VelmoranthFileManager deleteFileFromDevice:fromDir:]"] = [](const Step& step) {
        return shownBool([panel() deleteFileFromDevice:textAt(step, 0) fromDir:textAt(step, 1)]);
    };
    answers_["+[VelmoranthFileManager overwriteFontFilesInDir:fromTheme:]"] = [](const Step& step) {
        return shownBool([panel() overwriteFontFilesInDir:textAt(step, 0)
                                                fromTheme:textAt(step, 1)]);
    };
}

void DeviceSide::addSounds() {
    for (const char* const name :
         {"initClass:", "PlayButtonClick:", "PlaySlide:", "PlaySlideWithClick:", "PlayError:",
          "PlayReboot:", "PlaySuccess:", "PlayOn:", "PlayOff:"}) {
        answers_[std::string("-[Sounds ") + name + "]"] = [name](const Step& step) {
            [static_cast<id>(sounds()) performSelector:sel_registerName(name)
                                            withObject:someone(step)];
            return std::string();
        };
    }
    answers_["-[VelMoranth initClass:]"] = [](const Step& step) {
        [manager() initClass:someone(step)];
        return std::string();
    };
    answers_["-[VelMoranth playUISound:]"] = [](const Step& step) {
        [manager() playUISound:step.number];
        return std::string();
    };
    answers_["-[VelMoranth playsystemSound:]"] = [](const Step& step) {
        [manager() playsystemSound:static_cast<unsigned long long>(step.number)];
        return std::string();
    };
    answers_["-[_UIFeedback play]"] = [](const Step& step) {
        _UIFeedback* const feedback = [[[_UIFeedback alloc] init] autorelease];
        standins::setAnswer("-[_UIFeedback _effectiveSystemSoundID]",
                            static_cast<double>(step.number));
        [feedback play];
        return std::string();
    };
    answers_["+[SBUISound soundWithFeedbackEventType:]"] = [](const Step& step) {
        const auto type = static_cast<unsigned long long>(step.number);
        return shownObject([SBUISound soundWithFeedbackEventType:type]);
    };
}

void DeviceSide::addHomeScreen() {
    answers_["-[SBIconLegibilityLabelView isHidden]"] = [](const Step&) {
        auto* const label = viewOf<SBIconLegibilityLabelView>([SBIconLegibilityLabelView class]);
        return shownBool([label isHidden]);
    };
    answers_["-[SBIconLegibilityLabelView alpha]"] = [](const Step&) {
        auto* const label = viewOf<SBIconLegibilityLabelView>([SBIconLegibilityLabelView class]);
        return shownNumber([label alpha]);
    };
    answers_["-[SBIconBadgeView layoutSubviews]"] = [this](const Step&) {
        auto* const badge = viewOf<SBIconBadgeView>([SBIconBadgeView class]);
        auto* const background = viewOf<UIImageView>([UIImageView class]);
        setVariable(badge, "_backgroundView", background);
        [badge layoutSubviews];
        return "alpha " + shownNumber([badge alpha]) + " over " + shownImage([background image]);
    };
    answers_["-[SBIconView layoutSubviews]"] = [this](const Step& step) {
        auto* const view = viewOf<SBIconView>([SBIconView class]);
        setVariable(view, "_icon", iconFor(step));
        [view layoutSubviews];
        const CALayer* const layer = [view layer];
        std::string text =
            "tag " + std::to_string([view tag]) + " shadow " +
            shownNumber(static_cast<double>(layer->_shadowOpacity)) + " " +
            shownNumber(layer->_shadowOffset.width) + " " +
            shownNumber(layer->_shadowOffset.height) + " " + shownNumber(layer->_shadowRadius) +
            " path " +
            (layer->_hasShadowPath ? shownFrame(layer->_shadowPathRect) : std::string("none"));
        for (UIView* const subview in [view subviews]) {
            text += ", " + shownView(subview);
        }
        return text;
    };
}

}  // namespace velmoranth::equality
