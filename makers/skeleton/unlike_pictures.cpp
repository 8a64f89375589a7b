#include "makers/skeleton/unlike_pictures.h"

#include "simulator/screens/stock_pictures.h"
#include "simulator/toolkit/stock_images.h"

namespace velmoranth::makers {

using simulator::DeviceConfiguration;
using simulator::DeviceKind;
using simulator::Question;

std::string_view whyUnlike(const Question& question, const DeviceConfiguration& device) {
    if (simulator::takesTint(question)) {
        return kFilledWithColor;
    }
    if (question.word == "badge") {
        return "the system draws it as wide as the number, and a theme's picture is stretched";
    }
    if (device.kind == DeviceKind::pad && isCalendar(question)) {
        return "a pad shows a theme's picture without weekday and day";
    }
    return "";
}

bool isCalendar(const Question& question) {
    return question.word == "calendar" ||
           (question.word == "icon" && question.argument == simulator::kCalendarIdentifier);
}

}  // namespace velmoranth::makers
