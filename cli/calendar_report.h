// What a property list says about the calendar's icon and the icon does not show, from the record
// of a device that has drawn it.
#pragma once

#include "cli/explanation.h"
#include "cli/throw_away_device.h"

#include "record/entry.h"

#include <string>
#include <vector>

namespace velmoranth::cli {

// What is wrong with it.
enum class CalendarFault {
    bare,         // it says nothing of the calendar
    textMissing,  // nothing of one of the texts
    overlap,      // the day is written across the weekday
    unmasked,     // nothing of a mask that is there
    font,         // one that the device lacks, or none
    color,        // one that shows as another
    value,        // of a wrong kind, or a size that nothing is drawn in
};

struct CalendarFinding {
    CalendarFault fault;
    std::string text;  // without the list's name
    std::string file;  // of the theme, the list
};

[[nodiscard]] std::vector<CalendarFinding> calendarFaults(const DeviceOfRun& device,
                                                          const record::Record& record);

// A line each, beginning with the list's name: a font that the device lacks, a colour that shows as
// another one, a value of a wrong kind, a text that nothing is said about, with the cure. Nothing
// for the record of another icon. The list is read from the device that the record is of. With the
// mask that cuts other icons, also that it does not cut the calendar.
[[nodiscard]] std::vector<std::string> calendarFindings(const DeviceOfRun& device,
                                                        const record::Record& record,
                                                        const AskedFile* mask = nullptr);

}  // namespace velmoranth::cli
