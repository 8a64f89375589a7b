#include "simulator/screens/controls_screen.h"

#include "simulator/artwork/toolkit_artwork.h"
#include "simulator/home_screen/home_screen_layout.h"
#include "simulator/toolkit/image_messages.h"
#include "simulator/toolkit/named_views.h"
#include "simulator/toolkit/switch_view.h"
#include "simulator/toolkit/view_kit.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace velmoranth::simulator {
namespace {

using desktop::FontWeight;
using desktop::TextAlignment;
using platform::Color;
using platform::ImageRef;
using platform::Rect;
using platform::ViewRef;

// Points.
constexpr double kBarHeight = 44;
constexpr double kSearchBarHeight = 52;
constexpr double kSearchFieldHeight = 36;
constexpr double kTabBarHeight = 49;
constexpr double kRowHeight = 44;
constexpr double kButtonsHeight = 92;
constexpr double kMargin = 15;
constexpr double kIconSide = 29;
constexpr double kTextLeft = kMargin + kIconSide + kMargin;
constexpr double kTextSize = 17;
// Of the pad's cards; a phone's reach from edge to edge.
constexpr double kPadMargin = 20;
constexpr double kPadCornerRadius = 10;
constexpr double kPadGap = 24;

// How an image is asked for.
enum class Source {
    none,
    glyph,     // systemImageNamed:
    kit,       // kitImageNamed:
    app,       // imageNamed:inBundle:
    appGlyph,  // imageNamed:inBundle:withConfiguration:, a glyph of the app's own
};

enum class Accessory { none, chevron, check, on, off, grabber };

// Where there is room for a row.
enum class Shown { always, pad };

struct Row {
    Source source;
    std::string_view image;
    std::string_view title;
    std::string_view detail = {};
    Accessory accessory = Accessory::chevron;
    Shown shown = Shown::always;
};

constexpr std::array kLibraryRows{
    Row{Source::glyph, "gear", "General"},
    Row{Source::glyph, "person.crop.circle.fill", "Account", "Signed In"},
    Row{Source::glyph, "heart.fill", "Favorites", "24"},
    Row{Source::appGlyph, "workbench.mark", "Link", "Connected", Accessory::chevron, Shown::pad},
    Row{Source::glyph, "location.fill", "Places", "", Accessory::chevron, Shown::pad},
    Row{Source::glyph, "star.fill", "Rated", "Five Stars", Accessory::chevron, Shown::pad},
    Row{Source::glyph, "ellipsis.circle", "More", "", Accessory::chevron, Shown::pad},
    Row{Source::glyph, "trash", "Bin", "Empty", Accessory::chevron, Shown::pad},
};
constexpr std::array kSwitchRows{
    Row{Source::glyph, "bell.fill", "Reminders", "", Accessory::on},
    Row{Source::glyph, "moon.fill", "Quiet at Night", "", Accessory::off},
};
constexpr std::array kChoiceRows{
    Row{Source::none, "", "Show as List", "", Accessory::check},
    Row{Source::none, "", "Show as Grid", "", Accessory::none},
};
constexpr std::array kEditedRows{
    Row{Source::kit, "UIRemoveControlMinus", "Old Drawings", "", Accessory::grabber},
    Row{Source::kit, "UIRemoveControlMinus", "Sketches", "", Accessory::grabber, Shown::pad},
};

// Groups from top to bottom on a phone; a pad has two columns. The buttons' group is the first of
// the second one.
struct Group {
    std::span<const Row> rows;
    int padColumn;
};

constexpr std::array kGroups{Group{{}, 1}, Group{kLibraryRows, 0}, Group{kSwitchRows, 1},
                             Group{kChoiceRows, 0}, Group{kEditedRows, 1}};

struct Button {
    std::string_view image;
    std::string_view title;
};

constexpr std::array kButtons{Button{"FavoriteButton", "Favorite"},
                              Button{"RemindButton", "Remind"}, Button{"NightButton", "Night"},
                              Button{"PlaceButton", "Place"}};

// What the toolkit itself asks for differs: from iOS 13 on its own images are glyphs.
struct ToolkitImage {
    Source source;
    std::string_view name;
};

struct ToolkitLook {
    std::array<ToolkitImage, 2> barItems;
    ToolkitImage searchField, clearButton, disclosure, checkmark;
    std::array<ToolkitImage, 2> tabs;
};

constexpr ToolkitLook kLookOf12{
    {{{Source::kit, "UIButtonBarAction"}, {Source::kit, "UIButtonBarSearch"}}},
    {Source::kit, "UISearchFieldIcon"},
    {Source::kit, "UITextFieldClearButton"},
    {Source::kit, "UITableNext"},
    {Source::kit, "UIPreferencesBlueCheck"},
    {{{Source::kit, "UITabBarFavorites"}, {Source::kit, "UITabBarSearch"}}}};
constexpr ToolkitLook kLookOf13{
    {{{Source::glyph, "square.and.arrow.up"}, {Source::glyph, "plus"}}},
    {Source::glyph, "magnifyingglass"},
    {Source::glyph, "xmark.circle.fill"},
    {Source::glyph, "chevron.right"},
    {Source::glyph, "checkmark"},
    {{{Source::glyph, "star.fill"}, {Source::glyph, "magnifyingglass"}}}};

class Builder {
  public:
    Builder(const ScreenContext& context, platform::View& window)
        : context_(context),
          window_(window),
          ask_(context.runtime, context.toolkit),
          colors_(appColors(context.device.system)),
          look_(context.device.system.major < 13 ? kLookOf12 : kLookOf13),
          traits_(std::make_shared<TraitCollection>(context.device)) {
        if (context.device.system.major >= 13) {
            configuration_ = std::make_shared<SymbolConfiguration>(kTextSize);
        }
    }

    void build() {
        window_.setBackgroundColor(colors_.background);
        addGroups(addTopBars());
        addTabBar();
    }

  private:
    [[nodiscard]] bool isPad() const { return context_.device.kind == DeviceKind::pad; }

    [[nodiscard]] double width() const { return context_.bounds().size.width; }

    [[nodiscard]] double height() const { return context_.bounds().size.height; }

    [[nodiscard]] double hairline() const { return 1 / context_.scale(); }

    [[nodiscard]] ViewRef named(std::string_view className, const Rect& frame,
                                const Color& color) const {
        auto view = std::make_shared<NamedView>(className, frame);
        view->setBackgroundColor(color);
        return view;
    }

    // Glyphs take the tint.
    [[nodiscard]] ImageRef image(Source source, std::string_view name, const Color& tint) const {
        const std::string text(name);
        switch (source) {
            case Source::glyph:
                return context_.toolkit.tinted(ask_.systemImageNamed(text), tint);
            case Source::kit:
                return context_.toolkit.tinted(ask_.kitImageNamed(text), tint);
            case Source::app:
                return ask_.imageNamedInBundle(text, kAppBundle);
            case Source::appGlyph:
                return context_.toolkit.tinted(
                    ask_.imageNamedInBundleWithConfiguration(text, kAppBundle, configuration_),
                    tint);
            case Source::none:
                break;
        }
        return nullptr;
    }

    void addImage(platform::View& to, const ToolkitImage& which, const Rect& slot,
                  const Color& tint) const {
        to.addSubview(makeImage(image(which.source, which.name, tint), slot, context_.scale()));
    }

    // The navigation bar and the search field under it; how far down they reach.
    double addTopBars() {
        const double statusHeight = statusBarHeight(context_.device);
        const double bottom = statusHeight + kBarHeight + kSearchBarHeight;
        const ViewRef bar = named("UINavigationBar", {{0, 0}, {width(), bottom}}, colors_.bar);
        bar->addSubview(makeDarkStatusBar(context_.device));
        bar->addSubview(makeText(
            "Workbench",
            textStyle(kTextSize, colors_.text, TextAlignment::center, FontWeight::semibold),
            {{100, statusHeight}, {width() - 200, kBarHeight}}));
        addImage(*bar, {Source::kit, "UINavigationBarBackIndicatorDefault"},
                 {{8, statusHeight}, {13, kBarHeight}}, colors_.tint);
        bar->addSubview(makeText("Back", textStyle(kTextSize, colors_.tint),
                                 {{27, statusHeight}, {70, kBarHeight}}));
        constexpr double kItemPitch = 44;
        for (std::size_t i = 0; i < look_.barItems.size(); ++i) {
            const double right = width() - 8 - kItemPitch * static_cast<double>(i);
            addImage(*bar, look_.barItems.at(i), {{right - 36, statusHeight + 8}, {28, 28}},
                     colors_.tint);
        }
        bar->addSubview(searchBar(statusHeight + kBarHeight));
        bar->addSubview(
            makeBox({{0, bottom - hairline()}, {width(), hairline()}}, colors_.separator));
        window_.addSubview(bar);
        return bottom;
    }

    [[nodiscard]] ViewRef searchBar(double top) const {
        const double side = isPad() ? kPadMargin : 8;
        const double fieldWidth = width() - 2 * side;
        const auto bar =
            std::make_shared<NamedView>("UISearchBar", Rect{{0, top}, {width(), kSearchBarHeight}});
        const ViewRef field =
            makeBox({{side, 1}, {fieldWidth, kSearchFieldHeight}}, colors_.field, kPadCornerRadius);
        addImage(*field, look_.searchField, {{9, 9}, {18, 18}}, colors_.secondaryText);
        field->addSubview(makeText("kiln", textStyle(kTextSize, colors_.text),
                                   {{34, 0}, {fieldWidth - 74, kSearchFieldHeight}}));
        addImage(*field, look_.clearButton, {{fieldWidth - 28, 9}, {18, 18}},
                 colors_.secondaryText);
        bar->addSubview(field);
        return bar;
    }

    void addTabBar() {
        const double barHeight = kTabBarHeight + bottomInset(context_.device);
        const ViewRef bar =
            named("UITabBar", {{0, height() - barHeight}, {width(), barHeight}}, colors_.bar);
        bar->addSubview(makeBox({{0, -hairline()}, {width(), hairline()}}, colors_.separator));

        struct Tab {
            ToolkitImage image;
            std::string_view title;
        };

        const std::array tabs{Tab{look_.tabs[0], "Favorites"}, Tab{look_.tabs[1], "Search"},
                              Tab{{Source::app, "TabList"}, "Projects"},
                              Tab{{Source::app, "TabSettings"}, "Settings"}};
        const double pitch = isPad() ? 110 : width() / tabs.size();
        double left = (width() - pitch * tabs.size()) / 2;
        bool isSelected = true;
        for (const Tab& tab : tabs) {
            const Color& color = isSelected ? colors_.tint : colors_.secondaryText;
            addImage(*bar, tab.image, {{left + pitch / 2 - 15, 4}, {30, 28}}, color);
            bar->addSubview(
                makeText(std::string(tab.title),
                         textStyle(10, color, TextAlignment::center, FontWeight::medium),
                         {{left, 34}, {pitch, 12}}));
            left += pitch;
            isSelected = false;
        }
        window_.addSubview(bar);
    }

    [[nodiscard]] bool isShown(const Row& row) const {
        return row.shown == Shown::always || isPad();
    }

    [[nodiscard]] double heightOf(const Group& group) const {
        return group.rows.empty()
                   ? kButtonsHeight
                   : kRowHeight * static_cast<double>(std::ranges::count_if(
                                      group.rows, [&](const Row& row) { return isShown(row); }));
    }

    void addGroups(double top) {
        if (isPad()) {
            const double columnWidth = (width() - 3 * kPadMargin) / 2;
            std::array<double, 2> y{top + kPadGap, top + kPadGap};
            for (const Group& group : kGroups) {
                const auto column = static_cast<std::size_t>(group.padColumn);
                const double x =
                    kPadMargin + static_cast<double>(column) * (columnWidth + kPadMargin);
                addGroup(group, {{x, y.at(column)}, {columnWidth, heightOf(group)}});
                y.at(column) += heightOf(group) + kPadGap;
            }
            return;
        }
        constexpr double kLargestGap = 35;
        double free = height() - kTabBarHeight - bottomInset(context_.device) - top;
        for (const Group& group : kGroups) {
            free -= heightOf(group);
        }
        const double gap = snapToPixels(std::clamp(free / (kGroups.size() + 1), 0.0, kLargestGap),
                                        context_.scale());
        double y = top + gap;
        for (const Group& group : kGroups) {
            addGroup(group, {{0, y}, {width(), heightOf(group)}});
            y += heightOf(group) + gap;
        }
    }

    void addGroup(const Group& group, const Rect& frame) {
        const auto table = std::make_shared<NamedView>("UITableView", frame);
        table->setBackgroundColor(colors_.card);
        table->desktopLayer()->appearance.cornerRadius = isPad() ? kPadCornerRadius : 0;
        if (group.rows.empty()) {
            addButtons(*table, frame.size.width);
        }
        double y = 0;
        for (const Row& row : group.rows) {
            if (!isShown(row)) {
                continue;
            }
            if (y > 0) {
                const double left = row.source == Source::none ? kMargin : kTextLeft;
                table->addSubview(
                    makeBox({{left, y}, {frame.size.width - left, hairline()}}, colors_.separator));
            }
            table->addSubview(cell(row, {{0, y}, {frame.size.width, kRowHeight}}));
            y += kRowHeight;
        }
        if (!isPad()) {
            for (const double edge : {0.0, frame.size.height - hairline()}) {
                table->addSubview(
                    makeBox({{0, edge}, {frame.size.width, hairline()}}, colors_.separator));
            }
        }
        window_.addSubview(table);
    }

    [[nodiscard]] ViewRef cell(const Row& row, const Rect& frame) const {
        const auto cell = std::make_shared<NamedView>("UITableViewCell", frame);
        const double rowWidth = frame.size.width;
        cell->addSubview(makeImage(
            image(row.source, row.image, colors_.tint),
            {{kMargin, (kRowHeight - kIconSide) / 2}, {kIconSide, kIconSide}}, context_.scale()));
        const double left = row.source == Source::none ? kMargin : kTextLeft;
        const double right = rowWidth - kMargin;
        cell->addSubview(makeText(std::string(row.title), textStyle(kTextSize, colors_.text),
                                  {{left, 0}, {right - left - 60, kRowHeight}}));
        cell->addSubview(makeText(std::string(row.detail),
                                  textStyle(kTextSize, colors_.secondaryText, TextAlignment::right),
                                  {{right - 18 - 140, 0}, {140, kRowHeight}}));
        addAccessory(*cell, row.accessory, right);
        return cell;
    }

    void addAccessory(platform::View& cell, Accessory accessory, double right) const {
        // A glyph's square is wider than what is drawn in it.
        const auto slot = [right](double side) {
            return Rect{{right - side, (kRowHeight - side) / 2}, {side, side}};
        };
        switch (accessory) {
            case Accessory::none:
                return;
            case Accessory::chevron:
                return addImage(cell, look_.disclosure, slot(14), colors_.separator);
            case Accessory::check:
                return addImage(cell, look_.checkmark, slot(18), colors_.tint);
            case Accessory::grabber:
                return addImage(cell, {Source::kit, "UITableGrabber"}, slot(22), colors_.separator);
            case Accessory::on:
            case Accessory::off:
                return cell.addSubview(
                    makeSwitch(context_.toolkit, accessory == Accessory::on,
                               {right - kSwitchWidth,
                                snapToPixels((kRowHeight - kSwitchHeight) / 2, context_.scale())}));
        }
    }

    // The user's picture, and buttons with images of the app's own bundle.
    void addButtons(platform::View& table, double groupWidth) const {
        constexpr double kPictureSide = 56;
        table.addSubview(makeImage(
            ask_.imageNamedWithTrait("ProfilePicture", traits_),
            {{kMargin, (kButtonsHeight - kPictureSide) / 2}, {kPictureSide, kPictureSide}},
            context_.scale()));
        const double left = kMargin + kPictureSide + 10;
        const double pitch = (groupWidth - left - 8) / static_cast<double>(kButtons.size());
        double x = left;
        for (const Button& button : kButtons) {
            const auto view = std::make_shared<NamedView>(
                "UIButton", Rect{{x, 14}, {pitch, kButtonsHeight - 28}});
            view->addSubview(makeImage(ask_.imageNamedInBundleCompatibleWithTraitCollection(
                                           std::string(button.image), kAppBundle, traits_),
                                       {{(pitch - 36) / 2, 0}, {36, 36}}, context_.scale()));
            view->addSubview(makeText(std::string(button.title),
                                      textStyle(12, colors_.secondaryText, TextAlignment::center),
                                      {{0, 42}, {pitch, 18}}));
            table.addSubview(view);
            x += pitch;
        }
    }

    const ScreenContext& context_;
    platform::View& window_;
    ImageMessages ask_;
    const AppColors& colors_;
    const ToolkitLook& look_;
    platform::ObjectRef traits_;
    platform::ObjectRef configuration_;  // nil before iOS 13
};

}  // namespace

void ControlsScreen::layoutViews() {
    for (const ViewRef& view : window().subviews()) {
        view->removeFromSuperview();
    }
    Builder(context(), window()).build();
    AppScreen::layoutViews();
}

}  // namespace velmoranth::simulator
