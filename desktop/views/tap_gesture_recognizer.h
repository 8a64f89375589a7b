// UITapGestureRecognizer: what a tap sends, and to whom. Who knows of a tap, and sends the message,
// is the simulator.
#pragma once

#include "desktop/views/view_node.h"
#include "platform/uikit.h"

#include <memory>
#include <string>

namespace velmoranth::desktop {

class TapGestureRecognizer final : public platform::GestureRecognizer {
  public:
    // A target that is no view of ours counts as one that is gone.
    TapGestureRecognizer(platform::Object& target, platform::Selector action);

    [[nodiscard]] std::string className() const override { return "UITapGestureRecognizer"; }

    // Nil when it is gone.
    [[nodiscard]] platform::ObjectRef target() const;

    [[nodiscard]] const platform::Selector& action() const { return action_; }

  private:
    std::weak_ptr<ViewNode> node_;
    platform::Object* target_;  // the same object; valid while the node is there
    platform::Selector action_;
};

}  // namespace velmoranth::desktop
