#include "cli/device_process.h"

namespace velmoranth::cli {

DeviceProcess::DeviceProcess(const std::shared_ptr<const desktop::DeviceRoot>& root,
                             const desktop::ReplacedServices& replaced)
    : services_(root, {}, [this](const std::string& line) { log_.write(line); }),
      controller_(std::make_shared<desktop::DesktopViewController>(nullptr)) {
    const auto window = std::make_shared<desktop::DesktopWindow>(platform::Rect{});
    window->setRootViewController(controller_);
    services_.application().setKeyWindow(window);
    services_.becomePlatform(replaced);
}

std::optional<std::string> DeviceProcess::takeAlert() {
    const auto alert =
        std::dynamic_pointer_cast<desktop::DesktopAlertController>(controller_->presented());
    controller_->dismiss();
    return alert == nullptr ? std::nullopt : alert->message();
}

}  // namespace velmoranth::cli
