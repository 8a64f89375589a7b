// Questions (question_rows.h), answered in the process.
#pragma once

#include "desktop/result/result.h"
#include "platform/uikit.h"
#include "simulator/screen_context.h"
#include "simulator/screens/question_rows.h"

namespace velmoranth::simulator {

// Sends the message; the process is one of the row's kind. Nil is an answer too, and all that a
// question after a sound has. A problem when the system of the device has no such message.
[[nodiscard]] desktop::Result<platform::ImageRef> ask(const Question& question,
                                                      const ScreenContext& context);

}  // namespace velmoranth::simulator
