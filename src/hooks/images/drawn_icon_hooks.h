// Replacements of the two icons that the home screen draws itself: the calendar with the day, put
// together from the theme's background and two labels as its Info.plist says, and the clock.
#pragma once

#include "core/original_implementation.h"
#include "platform/foundation.h"
#include "platform/springboard.h"
#include "platform/uikit.h"

namespace velmoranth::hooks {

struct SBCalendarApplicationIconHooks {
    using Signature = platform::ImageRef(platform::SBCalendarApplicationIcon&,
                                         platform::SBIconImageInfo);

    // Made anew at every call: nothing is kept.
    static platform::ImageRef generateIconImageWithInfo(
        const core::OriginalImplementation<Signature>& original,
        platform::SBCalendarApplicationIcon& self, platform::SBIconImageInfo info);
};

struct SBHClockApplicationIconImageViewHooks {
    // name, info, including mask
    using Signature = platform::ImageRef(platform::Class&, platform::NullableString,
                                         platform::SBIconImageInfo, bool);

    static platform::ImageRef generateProcessedMappedIconImageWithNameImageInfoIncludingMask(
        const core::OriginalImplementation<Signature>& original, platform::Class& self,
        platform::NullableString name, platform::SBIconImageInfo info, bool includingMask);
};

}  // namespace velmoranth::hooks
