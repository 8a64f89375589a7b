#include "simulator/screens/settings_screen.h"

#include "platform/springboard.h"
#include "simulator/artwork/toolkit_artwork.h"
#include "simulator/screens/screen_builder.h"
#include "simulator/toolkit/class_rows.h"
#include "simulator/toolkit/status_bar.h"

#include <array>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace velmoranth::simulator {
namespace {

using desktop::FontWeight;
using desktop::TextAlignment;
using desktop::TextStyle;
using platform::Color;
using platform::ImageRef;
using platform::NullableString;
using platform::Rect;
using platform::ViewRef;

constexpr std::array kSettingsClasses{
    ClassRow{"PKIconImageCache", "NSObject"},
    ClassRow{"PSTableCell", "UITableViewCell"},
};

// Points: estimates.
constexpr double kLargeTitleHeight = 52;
constexpr double kProfileHeight = 80;
constexpr double kPictureSide = 60;
constexpr double kTextLeft = kRowMargin + kSettingsIconSide + kRowMargin;
constexpr double kSidebarWidth = 320;  // of a pad
constexpr Color kSelected{0.82, 0.82, 0.84, 1};
constexpr Color kPicture{0.62, 0.65, 0.71, 1};

enum class Accessory { chevron, off, none };

struct Row {
    std::string_view icon;  // a key of the icon cache; "" for a row without
    std::string_view title;
    std::string_view detail = {};
    Accessory accessory = Accessory::chevron;
};

constexpr std::array kConnections{Row{"AirplaneMode", "Airplane Mode", "", Accessory::off},
                                  Row{"WiFi", "Wi-Fi", "Kiln Studio"},
                                  Row{"Bluetooth", "Bluetooth", "On"}, Row{"Cellular", "Cellular"}};
constexpr std::array kAttention{
    Row{"Notifications", "Notifications"}, Row{"Sounds", "Sounds & Haptics"},
    Row{"DoNotDisturb", "Do Not Disturb"}, Row{"ScreenTime", "Screen Time"}};
constexpr std::array kDevice{Row{"General", "General"},
                             Row{"ControlCenter", "Control Center"},
                             Row{"DisplayBrightness", "Display & Brightness"},
                             Row{"Wallpaper", "Wallpaper"},
                             Row{"Battery", "Battery"},
                             Row{"Privacy", "Privacy"},
                             Row{"PhotosAndCamera", "Photos"}};
constexpr std::array<std::span<const Row>, 3> kGroups{kConnections, kAttention, kDevice};

// The page beside a pad's list.
constexpr std::string_view kChosen = "General";
constexpr std::array kAbout{Row{"", "About"}, Row{"", "Software Update"}};
constexpr std::array kSharing{Row{"", "AirDrop", "Contacts Only"}, Row{"", "Handoff", "On"}};
constexpr std::array kStorage{Row{"", "Storage", "41.6 GB Available"},
                              Row{"", "Background Refresh", "Wi-Fi"}};
constexpr std::array kInput{Row{"", "Date & Time"}, Row{"", "Keyboard"}, Row{"", "Fonts"},
                            Row{"", "Language & Region", "English"}, Row{"", "Dictionary"}};
constexpr std::array kReset{Row{"", "Reset"}, Row{"", "Shut Down", "", Accessory::none}};
constexpr std::array<std::span<const Row>, 5> kChosenGroups{kAbout, kSharing, kStorage, kInput,
                                                            kReset};

// PKIconImageCache.
using IconCache = Named<"PKIconImageCache", platform::PKIconImageCache>;

class Builder : ScreenBuilder {
  public:
    using ScreenBuilder::ScreenBuilder;

    void build() {
        window_.setBackgroundColor(colors_.background);
        addListColumn(isPad() ? kSidebarWidth : size_.width, isPad() ? kChosen : "");
        if (isPad()) {
            addChosenPage(
                *column({{kSidebarWidth, 0}, {size_.width - kSidebarWidth, size_.height}}));
            window_.addSubview(
                makeBox({{kSidebarWidth, 0}, {hairline(), size_.height}}, colors_.separator));
        }
        window_.addSubview(makeStatusBar(context_.device, platform::kBlackColor));
    }

    void addListColumn(double width, std::string_view chosen) const {
        addList(*column({{0, 0}, {width, context_.bounds().size.height}}), chosen);
    }

  private:
    [[nodiscard]] ViewRef column(const Rect& frame) const {
        const auto view = addView(window_, "UITableView", frame);
        view->setClipsToBounds(true);
        return view;
    }

    void addList(platform::View& list, std::string_view chosen) const {
        const double width = list.bounds().size.width;
        double y = statusBarHeight(context_.device) + kBarHeight;
        addText(list, "Settings",
                textStyle(34, colors_.text, TextAlignment::left, FontWeight::bold),
                {{kRowMargin + 1, y}, {width - 2 * kRowMargin, kLargeTitleHeight - 8}});
        y += kLargeTitleHeight;
        addProfile(list, y);
        y += kProfileHeight + kGroupGap;
        for (const std::span<const Row> group : kGroups) {
            y = addGroup(list, group, y, chosen) + kGroupGap;
        }
    }

    void addChosenPage(platform::View& page) const {
        addNavigationBar(page, kChosen);
        double y = statusBarHeight(context_.device) + kBarHeight + kGroupGap;
        for (const std::span<const Row> group : kChosenGroups) {
            y = addGroup(page, group, y, "") + kGroupGap;
        }
    }

    [[nodiscard]] ViewRef cell(platform::View& list, double y, double height,
                               const Color& color) const {
        return addView(list, "PSTableCell", {{0, y}, {list.bounds().size.width, height}}, color);
    }

    void addLines(platform::View& list, double top, double bottom) const {
        addLine(list, top);
        addLine(list, bottom - hairline());
    }

    void addProfile(platform::View& list, double y) const {
        const ViewRef row = cell(list, y, kProfileHeight, colors_.card);
        const double inset = (kProfileHeight - kPictureSide) / 2;
        const ViewRef picture = makeBox({{kRowMargin, inset}, {kPictureSide, kPictureSide}},
                                        kPicture, kPictureSide / 2);
        addText(*picture, "RK", centered(26, platform::kWhiteColor, FontWeight::medium),
                picture->bounds());
        row->addSubview(picture);
        const double left = kRowMargin + kPictureSide + kRowMargin;
        const double width = list.bounds().size.width - left - 34;
        addText(*row, "Robin Kilner", textStyle(20, colors_.text), {{left, 16}, {width, 26}});
        addText(*row, "Account, Cloud & Purchases", textStyle(13, colors_.text),
                {{left, 43}, {width, 18}});
        addChevron(*row);
        addLines(list, y, y + kProfileHeight);
    }

    void addChevron(platform::View& row) const {
        const platform::Size size = row.bounds().size;
        const Rect slot{{size.width - kRowMargin - 13, (size.height - 14) / 2}, {14, 14}};
        addToolkitImage(row, slot, "UITableNext", "chevron.right", colors_.separator);
    }

    // How far down the group reaches.
    double addGroup(platform::View& list, std::span<const Row> group, double top,
                    std::string_view chosen) const {
        double y = top;
        for (const Row& row : group) {
            const bool isChosen = !chosen.empty() && row.title == chosen;
            const ViewRef view = cell(list, y, kRowHeight, isChosen ? kSelected : colors_.card);
            addRow(*view, row);
            if (y > top) {
                addLine(list, y, row.icon.empty() ? kRowMargin : kTextLeft);
            }
            y += kRowHeight;
        }
        addLines(list, top, y);
        return y;
    }

    void addRow(platform::View& view, const Row& row) const {
        const double width = view.bounds().size.width;
        double left = kRowMargin;
        if (!row.icon.empty()) {
            // On whole pixels: an icon between them would be blurred.
            const double top = snapToPixels((kRowHeight - kSettingsIconSide) / 2, context_.scale());
            images_.add(
                view, {{kRowMargin, top}, {kSettingsIconSide, kSettingsIconSide}},
                ImagePlacement::fill,
                [&runtime = context_.runtime, cache = iconCache_, key = std::string(row.icon)] {
                    return runtime.send<ImageRef, NullableString>(*cache, "imageForKey:", key);
                });
            left = kTextLeft;
        }
        const TextStyle title = textStyle(kRowTextSize, colors_.text);
        addText(view, row.title, title, {{left, 0}, {width - left - kRowMargin, kRowHeight}});
        if (!row.detail.empty()) {
            const double taken =
                left + desktop::measureText(std::string(row.title), title).width + 8;
            const double right = width - (row.accessory == Accessory::chevron ? 36 : kRowMargin);
            addText(view, row.detail, rightAligned(kRowTextSize, colors_.secondaryText),
                    {{taken, 0}, {right - taken, kRowHeight}});
        }
        switch (row.accessory) {
            case Accessory::chevron:
                return addChevron(view);
            case Accessory::off:
                return addSwitch(view, false);
            case Accessory::none:
                return;
        }
    }

    std::shared_ptr<IconCache> iconCache_ = std::make_shared<IconCache>();
};

}  // namespace

void registerSettingsClasses(const ScreenContext& context) {
    addClasses(kSettingsClasses, context.device.system, context.runtime);
    ClassMethods(context.runtime, "PKIconImageCache")
        .add("imageForKey:", [&context](platform::PKIconImageCache&, const NullableString& key) {
            return key ? context.toolkit.stockImage(*key, std::string(kPreferencesBundle))
                       : nullptr;
        });
}

double settingsListWidth(const DeviceConfiguration& device) {
    return device.kind == DeviceKind::pad ? kSidebarWidth : 0;
}

void addSettingsList(const ScreenContext& context, platform::View& window, AskedImages& images) {
    if (const double width = settingsListWidth(context.device); width > 0) {
        Builder(context, window, images).addListColumn(width, "");
    }
}

SettingsScreen::SettingsScreen(const ScreenContext& context) : AppScreen(context) {
    Builder(context, window(), images()).build();
}

}  // namespace velmoranth::simulator
