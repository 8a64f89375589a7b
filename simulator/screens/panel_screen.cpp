#include "simulator/screens/panel_screen.h"

#include "core/preferences.h"
#include "core/setting_rows.h"
#include "desktop/views/view_controllers.h"
#include "platform/foundation.h"
#include "platform/platform.h"
#include "simulator/artwork/toolkit_artwork.h"
#include "simulator/screens/screen_builder.h"
#include "simulator/screens/settings_screen.h"
#include "simulator/toolkit/status_bar.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

namespace velmoranth::simulator {
namespace {

using platform::Color;
using platform::NullableString;
using platform::Rect;
using platform::ViewRef;

constexpr const char* kFileManager = "VelmoranthFileManager";
constexpr const char* kSuccessImage = "/var/tmp/velmoranth-success.png";

// The success image's side when it has grown, points.
constexpr double kSuccessSide = 200;

// Points, as the settings app's own list has them.
constexpr double kHeaderGap = 16;  // more, above a group that has a header
constexpr double kPanelHeaderHeight = 24;
constexpr double kHeaderSize = 13;
constexpr Color kHeaderText{109.0 / 255, 109.0 / 255, 114.0 / 255, 1};

// A row that does something, or, with the key of a setting, one with a switch.
struct PanelRow {
    std::string_view title;
    std::string_view key = {};
    std::optional<PanelTask> task = {};
};

struct Group {
    std::string_view header;  // "" for none
    std::span<const core::SettingRow> switches = {};
    std::span<const PanelRow> tasks = {};

    [[nodiscard]] std::size_t rowCount() const { return switches.size() + tasks.size(); }
};

// The settings from one key to another.
consteval std::span<const core::SettingRow> switches(std::string_view first,
                                                     std::string_view last) {
    const auto indexOf = [](std::string_view key) {
        std::size_t index = 0;
        while (core::kSettingRows.at(index).key != key) {
            ++index;
        }
        return index;
    };
    return std::span(core::kSettingRows)
        .subspan(indexOf(first), indexOf(last) + 1 - indexOf(first));
}

constexpr std::array kTasks{PanelRow{"Apply Settings", "", PanelTask::applySettings},
                            PanelRow{"Delete “Night”", "", PanelTask::deleteSettings}};
constexpr std::array kPanelGroups{
    Group{"", switches("enable", "enable")}, Group{"SAVED SETTINGS", {}, kTasks},
    Group{"ICONS", switches("enableIconMask", "dynamicShadow")},
    Group{"HIDE", switches("removeDock", "removePageDots")},
    Group{"DIAGNOSTICS", switches("enableLogging", "enableImageDump")}};

// The panel's part of the screen: beside the settings app's list on a pad.
Rect panelFrame(const DeviceConfiguration& device) {
    const double left = settingsListWidth(device);
    return {{left, 0}, {device.screen.width - left, device.screen.height}};
}

// Calls back for each group with where its rows begin, and for each row with where it is; all in
// the panel's coordinates.
void forEachRow(const DeviceConfiguration& device,
                const std::function<void(const Group& group, double top)>& onGroup,
                const std::function<void(const PanelRow& row, const Rect& frame)>& onRow) {
    const double width = panelFrame(device).size.width;
    double y = statusBarHeight(device) + kBarHeight;
    for (const Group& group : kPanelGroups) {
        y += kGroupGap + (group.header.empty() ? 0 : kHeaderGap);
        onGroup(group, y);
        const auto add = [&](const PanelRow& row) {
            onRow(row, {{0, y}, {width, kRowHeight}});
            y += kRowHeight;
        };
        std::for_each(group.tasks.begin(), group.tasks.end(), add);
        for (const core::SettingRow& setting : group.switches) {
            add({setting.title, setting.key});
        }
    }
}

class PanelBuilder : ScreenBuilder {
  public:
    using ScreenBuilder::ScreenBuilder;

    void build() const {
        const Rect frame = panelFrame(context_.device);
        const auto panel = addView(window_, "UITableView", frame);
        panel->setClipsToBounds(true);
        forEachRow(
            context_.device, [&](const Group& group, double top) { addGroup(*panel, group, top); },
            [&](const PanelRow& row, const Rect& place) { addRow(*panel, row, place); });
        addBar(*panel);
        if (frame.origin.x > 0) {
            window_.addSubview(
                makeBox({frame.origin, {hairline(), frame.size.height}}, colors_.separator));
        }
        window_.addSubview(makeStatusBar(context_.device, platform::kBlackColor));
    }

  private:
    void addBar(platform::View& panel) const {
        const platform::ViewRef bar = addNavigationBar(panel, "VelMoranth");
        if (isPad()) {
            return;
        }
        constexpr double kSide = 22;
        const double top = statusBarHeight(context_.device);
        addToolkitImage(*bar, {{3, top + (kBarHeight - kSide) / 2}, {kSide, kSide}},
                        "UINavigationBarBackIndicatorDefault", "chevron.left", colors_.tint);
        addText(*bar, "Settings", textStyle(kRowTextSize, colors_.tint),
                {{27, top}, {100, kBarHeight}});
    }

    // The header, and the rows' card with its lines.
    void addGroup(platform::View& panel, const Group& group, double top) const {
        const double width = panel.bounds().size.width;
        if (!group.header.empty()) {
            addText(panel, group.header, textStyle(kHeaderSize, kHeaderText),
                    {{kRowMargin, top - kPanelHeaderHeight - 3},
                     {width - 2 * kRowMargin, kPanelHeaderHeight}});
        }
        const double height = kRowHeight * static_cast<double>(group.rowCount());
        const ViewRef card = makeBox({{0, top}, {width, height}}, colors_.card);
        panel.addSubview(card);
        for (std::size_t i = 0; i <= group.rowCount(); ++i) {
            const bool isEdge = i == 0 || i == group.rowCount();
            const double y = kRowHeight * static_cast<double>(i);
            card->addSubview(makeBox(
                {{isEdge ? 0 : kRowMargin, i == 0 ? 0 : y - hairline()}, {width, hairline()}},
                colors_.separator));
        }
    }

    void addRow(platform::View& panel, const PanelRow& row, const Rect& frame) const {
        const auto cell = addView(panel, "PSTableCell", frame);
        const Color color = !row.task                               ? colors_.text
                            : row.task == PanelTask::deleteSettings ? colors_.destructive
                                                                    : colors_.tint;
        addText(*cell, row.title, textStyle(kRowTextSize, color),
                {{kRowMargin, 0}, {frame.size.width - 2 * kRowMargin, kRowHeight}});
        if (!row.key.empty()) {
            addSwitch(*cell, isOn(row.key));
        }
    }

    [[nodiscard]] bool isOn(std::string_view key) const {
        return preferences_ &&
               platform::boolValue(platform::objectForKey(*preferences_, std::string(key)));
    }

    std::optional<platform::Dictionary> preferences_ =
        platform::platform().propertyLists.dictionaryWithContentsOfFile(core::kPreferencesPath);
};

// A saved file that is not there: the panel's name for it, or one with a number. None of the
// device's own is ever deleted.
std::string missingSettings() {
    std::string path;
    int number = 1;
    do {
        path = core::savedCopyPath(number == 1 ? "Night" : "Night " + std::to_string(number));
        ++number;
    } while (platform::platform().fileManager.fileExistsAtPath(path));
    return path;
}

}  // namespace

Rect panelRow(PanelTask task, const DeviceConfiguration& device) {
    const platform::Point origin = panelFrame(device).origin;
    Rect found;
    forEachRow(
        device, [](const Group&, double) {},
        [&](const PanelRow& row, const Rect& frame) {
            if (row.task == task) {
                found = {{origin.x + frame.origin.x, origin.y + frame.origin.y}, frame.size};
            }
        });
    return found;
}

PanelScreen::PanelScreen(const ScreenContext& context, PanelTask task)
    : AppScreen(context), task_(task) {
    window().setBackgroundColor(appColors(context.device.system).background);
    addSettingsList(context, window(), images());
    PanelBuilder(context, window(), images()).build();
}

void PanelScreen::didAppear() {
    perform(task_);
    if (task_ == PanelTask::applySettings) {
        advance(kSuccessGrows);
    }
}

void PanelScreen::perform(PanelTask task) {
    if (context().runtime.getClass(kFileManager) == nullptr) {
        return;
    }
    task == PanelTask::deleteSettings ? deleteSettings() : applySettings();
}

void PanelScreen::deleteSettings() const {
    context().runtime.sendToClass<bool, NullableString, NullableString>(
        kFileManager, "deleteFileFromDevice:fromDir:", missingSettings(), core::kSavedFolder);
}

void PanelScreen::applySettings() const {
    // The method takes a file. A device whose temporary folder cannot be written shows an empty
    // image, as it does for a file that is none.
    platform::FileManager& files = platform::platform().fileManager;
    const bool isFree = !files.fileExistsAtPath(kSuccessImage);
    const auto image = context().picture(drawSuccessPlate(kSuccessSide, context().scale()));
    const auto bytes = platform::platform().images.pngRepresentation(image);
    const bool written = isFree && bytes && files.createFileAtPathContents(kSuccessImage, *bytes);
    context().runtime.sendToClass<void, NullableString>(kFileManager,
                                                        "ShowSuccesView:", kSuccessImage);
    if (written) {
        files.removeItemAtPath(kSuccessImage);
    }
}

std::shared_ptr<desktop::DesktopViewController> PanelScreen::rootViewController() const {
    const platform::WindowRef window = context().application.keyWindow();
    return window == nullptr ? nullptr
                             : std::dynamic_pointer_cast<desktop::DesktopViewController>(
                                   window->rootViewController());
}

void PanelScreen::showPresented() {
    const auto root = rootViewController();
    const platform::ViewControllerRef presented = root == nullptr ? nullptr : root->presented();
    if (presented == presented_) {
        return;
    }
    presented_ = presented;
    if (alert_ != nullptr) {
        alert_->view()->removeFromSuperview();
        alert_ = nullptr;
    }
    if (auto alert = std::dynamic_pointer_cast<const desktop::DesktopAlertController>(presented)) {
        alert_ = std::make_unique<AlertView>(std::move(alert), context().device);
        window().addSubview(alert_->view());
    }
}

void PanelScreen::layoutViews() {
    showPresented();
    AppScreen::layoutViews();
}

void PanelScreen::tap(const platform::Point& point) {
    showPresented();
    if (alert_ != nullptr) {
        if (const auto action = alert_->actionAt(point)) {
            rootViewController()->dismiss();
            showPresented();
            action->choose();
        }
        return;
    }
    for (const PanelTask task : {PanelTask::deleteSettings, PanelTask::applySettings}) {
        const Rect row = panelRow(task, context().device);
        if (point.x >= row.origin.x && point.x < row.origin.x + row.size.width &&
            point.y >= row.origin.y && point.y < row.origin.y + row.size.height) {
            perform(task);
        }
    }
}

}  // namespace velmoranth::simulator
