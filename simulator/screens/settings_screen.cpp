#include "simulator/screens/settings_screen.h"

#include "platform/springboard.h"
#include "simulator/artwork/toolkit_artwork.h"
#include "simulator/home_screen/home_screen_layout.h"
#include "simulator/toolkit/class_rows.h"
#include "simulator/toolkit/image_messages.h"
#include "simulator/toolkit/named_views.h"
#include "simulator/toolkit/switch_view.h"
#include "simulator/toolkit/view_kit.h"

#include <array>
#include <cstddef>
#include <functional>
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

constexpr std::array kClasses{
    ClassRow{"PKIconImageCache", "NSObject"},
    ClassRow{"PSTableCell", "UITableViewCell"},
};

// Points. The platform's interface guidelines and estimates after them.
constexpr double kBarHeight = 44;
constexpr double kLargeTitleHeight = 52;
constexpr double kRowHeight = 44;
constexpr double kProfileHeight = 80;
constexpr double kPictureSide = 60;
constexpr double kGroupGap = 35;
constexpr double kMargin = 15;
constexpr double kTextLeft = kMargin + kSettingsIconSide + kMargin;
constexpr double kTextSize = 17;
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
class IconCache final : public platform::PKIconImageCache {
  public:
    [[nodiscard]] std::string className() const override { return "PKIconImageCache"; }
};

class Builder {
  public:
    Builder(const ScreenContext& context, platform::View& window, AskedImages& images)
        : context_(context),
          window_(window),
          images_(images),
          ask_(context.runtime, context.toolkit),
          colors_(appColors(context.device.system)),
          iconCache_(std::make_shared<IconCache>()) {}

    void build() {
        const platform::Size screen = context_.bounds().size;
        const bool isPad = context_.device.kind == DeviceKind::pad;
        window_.setBackgroundColor(colors_.background);
        addListColumn(isPad ? kSidebarWidth : screen.width, isPad ? kChosen : std::string_view());
        if (isPad) {
            const ViewRef page =
                column({{kSidebarWidth, 0}, {screen.width - kSidebarWidth, screen.height}});
            addChosenPage(*page);
            window_.addSubview(
                makeBox({{kSidebarWidth, 0}, {hairline(), screen.height}}, colors_.separator));
        }
        window_.addSubview(makeDarkStatusBar(context_.device));
    }

    void addListColumn(double width, std::string_view chosen) const {
        addList(*column({{0, 0}, {width, context_.bounds().size.height}}), chosen);
    }

  private:
    [[nodiscard]] double hairline() const { return 1 / context_.scale(); }

    [[nodiscard]] ViewRef column(const Rect& frame) const {
        const auto view = std::make_shared<NamedView>("UITableView", frame);
        view->setClipsToBounds(true);
        window_.addSubview(view);
        return view;
    }

    void addList(platform::View& list, std::string_view chosen) const {
        const double width = list.bounds().size.width;
        double y = statusBarHeight(context_.device) + kBarHeight;
        list.addSubview(makeText("Settings",
                                 textStyle(34, colors_.text, TextAlignment::left, FontWeight::bold),
                                 {{kMargin + 1, y}, {width - 2 * kMargin, kLargeTitleHeight - 8}}));
        y += kLargeTitleHeight;
        addProfile(list, y);
        y += kProfileHeight + kGroupGap;
        for (const std::span<const Row> group : kGroups) {
            y = addGroup(list, group, y, chosen) + kGroupGap;
        }
    }

    void addChosenPage(platform::View& page) const {
        const double width = page.bounds().size.width;
        const double top = statusBarHeight(context_.device);
        const double bottom = top + kBarHeight;
        const auto bar =
            std::make_shared<NamedView>("UINavigationBar", Rect{{0, 0}, {width, bottom}});
        bar->setBackgroundColor(colors_.bar);
        bar->addSubview(makeText(
            std::string(kChosen),
            textStyle(kTextSize, colors_.text, TextAlignment::center, FontWeight::semibold),
            {{0, top}, {width, kBarHeight}}));
        bar->addSubview(makeBox({{0, bottom}, {width, hairline()}}, colors_.separator));
        page.addSubview(bar);
        double y = bottom + kGroupGap;
        for (const std::span<const Row> group : kChosenGroups) {
            y = addGroup(page, group, y, "") + kGroupGap;
        }
    }

    [[nodiscard]] ViewRef cell(platform::View& list, double y, double height,
                               const Color& color) const {
        const auto view = std::make_shared<NamedView>(
            "PSTableCell", Rect{{0, y}, {list.bounds().size.width, height}});
        view->setBackgroundColor(color);
        list.addSubview(view);
        return view;
    }

    void addLines(platform::View& list, double top, double bottom) const {
        for (const double y : {top, bottom - hairline()}) {
            list.addSubview(
                makeBox({{0, y}, {list.bounds().size.width, hairline()}}, colors_.separator));
        }
    }

    void addProfile(platform::View& list, double y) const {
        const ViewRef row = cell(list, y, kProfileHeight, colors_.card);
        const double inset = (kProfileHeight - kPictureSide) / 2;
        const ViewRef picture =
            makeBox({{kMargin, inset}, {kPictureSide, kPictureSide}}, kPicture, kPictureSide / 2);
        picture->addSubview(makeText(
            "RK", textStyle(26, platform::kWhiteColor, TextAlignment::center, FontWeight::medium),
            picture->bounds()));
        row->addSubview(picture);
        const double left = kMargin + kPictureSide + kMargin;
        const double width = list.bounds().size.width - left - 34;
        row->addSubview(
            makeText("Robin Kilner", textStyle(20, colors_.text), {{left, 16}, {width, 26}}));
        row->addSubview(makeText("Account, Cloud & Purchases", textStyle(13, colors_.text),
                                 {{left, 43}, {width, 18}}));
        addChevron(*row);
        addLines(list, y, y + kProfileHeight);
    }

    void addChevron(platform::View& row) const {
        const platform::Size size = row.bounds().size;
        const Rect slot{{size.width - kMargin - 13, (size.height - 14) / 2}, {14, 14}};
        const bool hasGlyphs = context_.device.system.major >= 13;
        images_.add(row, slot, ImagePlacement::fit, [builder = *this, hasGlyphs] {
            return hasGlyphs ? builder.context_.toolkit.tinted(
                                   builder.ask_.systemImageNamed("chevron.right"),
                                   builder.colors_.separator)
                             : builder.ask_.kitImageNamed("UITableNext");
        });
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
                const double left = row.icon.empty() ? kMargin : kTextLeft;
                list.addSubview(makeBox({{left, y}, {list.bounds().size.width - left, hairline()}},
                                        colors_.separator));
            }
            y += kRowHeight;
        }
        addLines(list, top, y);
        return y;
    }

    void addRow(platform::View& view, const Row& row) const {
        const double width = view.bounds().size.width;
        double left = kMargin;
        if (!row.icon.empty()) {
            // On whole pixels: an icon between them would be blurred.
            const double top = snapToPixels((kRowHeight - kSettingsIconSide) / 2, context_.scale());
            images_.add(
                view, {{kMargin, top}, {kSettingsIconSide, kSettingsIconSide}},
                ImagePlacement::fill,
                [&runtime = context_.runtime, cache = iconCache_, key = std::string(row.icon)] {
                    return runtime.send<ImageRef, NullableString>(*cache, "imageForKey:", key);
                });
            left = kTextLeft;
        }
        const TextStyle title = textStyle(kTextSize, colors_.text);
        view.addSubview(makeText(std::string(row.title), title,
                                 {{left, 0}, {width - left - kMargin, kRowHeight}}));
        if (!row.detail.empty()) {
            const double taken =
                left + desktop::measureText(std::string(row.title), title).width + 8;
            const double right = width - (row.accessory == Accessory::chevron ? 36 : kMargin);
            view.addSubview(
                makeText(std::string(row.detail),
                         textStyle(kTextSize, colors_.secondaryText, TextAlignment::right),
                         {{taken, 0}, {right - taken, kRowHeight}}));
        }
        switch (row.accessory) {
            case Accessory::chevron:
                return addChevron(view);
            case Accessory::off:
                return view.addSubview(
                    makeSwitch(context_.toolkit, false,
                               {width - kMargin - kSwitchWidth,
                                snapToPixels((kRowHeight - kSwitchHeight) / 2, context_.scale())}));
            case Accessory::none:
                return;
        }
    }

    const ScreenContext& context_;
    platform::View& window_;
    AskedImages& images_;
    ImageMessages ask_;
    const AppColors& colors_;
    std::shared_ptr<IconCache> iconCache_;
};

}  // namespace

void registerSettingsClasses(const ScreenContext& context) {
    addClasses(kClasses, context.device.system, context.runtime);
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
