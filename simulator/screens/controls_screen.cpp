#include "simulator/screens/controls_screen.h"

#include "simulator/screens/screen_builder.h"
#include "simulator/toolkit/status_bar.h"

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
using platform::Color;
using platform::ImageRef;
using platform::Rect;
using platform::ViewRef;

// Points.
constexpr double kSearchBarHeight = 52;
constexpr double kSearchFieldHeight = 36;
constexpr double kTabBarHeight = 49;
constexpr double kButtonsHeight = 92;
constexpr double kIconSide = 29;
constexpr double kTextLeft = kRowMargin + kIconSide + kRowMargin;
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

class Builder : ScreenBuilder {
  public:
    using ScreenBuilder::ScreenBuilder;

    void build() {
        window_.setBackgroundColor(colors_.background);
        addGroups(addTopBars());
        addTabBar();
    }

  private:
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
        const auto bar =
            addView(window_, "UINavigationBar", {{0, 0}, {size_.width, bottom}}, colors_.bar);
        bar->addSubview(makeStatusBar(context_.device, platform::kBlackColor));
        addText(*bar, "Workbench", centered(kRowTextSize, colors_.text, FontWeight::semibold),
                {{100, statusHeight}, {size_.width - 200, kBarHeight}});
        addImage(*bar, {Source::kit, "UINavigationBarBackIndicatorDefault"},
                 {{8, statusHeight}, {13, kBarHeight}}, colors_.tint);
        addText(*bar, "Back", textStyle(kRowTextSize, colors_.tint),
                {{27, statusHeight}, {70, kBarHeight}});
        constexpr double kItemPitch = 44;
        for (std::size_t i = 0; i < look_.barItems.size(); ++i) {
            const double right = size_.width - 8 - kItemPitch * static_cast<double>(i);
            addImage(*bar, look_.barItems.at(i), {{right - 36, statusHeight + 8}, {28, 28}},
                     colors_.tint);
        }
        addSearchBar(*bar, statusHeight + kBarHeight);
        addLine(*bar, bottom - hairline());
        return bottom;
    }

    void addSearchBar(platform::View& to, double top) const {
        const double side = isPad() ? kPadMargin : 8;
        const double fieldWidth = size_.width - 2 * side;
        const auto bar = addView(to, "UISearchBar", {{0, top}, {size_.width, kSearchBarHeight}});
        const ViewRef field =
            makeBox({{side, 1}, {fieldWidth, kSearchFieldHeight}}, colors_.field, kPadCornerRadius);
        addImage(*field, look_.searchField, {{9, 9}, {18, 18}}, colors_.secondaryText);
        addText(*field, "kiln", textStyle(kRowTextSize, colors_.text),
                {{34, 0}, {fieldWidth - 74, kSearchFieldHeight}});
        addImage(*field, look_.clearButton, {{fieldWidth - 28, 9}, {18, 18}},
                 colors_.secondaryText);
        bar->addSubview(field);
    }

    void addTabBar() {
        const double barHeight = kTabBarHeight + bottomInset(context_.device);
        const auto bar =
            addView(window_, "UITabBar", {{0, size_.height - barHeight}, {size_.width, barHeight}},
                    colors_.bar);
        addLine(*bar, -hairline());

        struct Tab {
            ToolkitImage image;
            std::string_view title;
        };

        const std::array tabs{Tab{look_.tabs[0], "Favorites"}, Tab{look_.tabs[1], "Search"},
                              Tab{{Source::app, "TabList"}, "Projects"},
                              Tab{{Source::app, "TabSettings"}, "Settings"}};
        const double pitch = isPad() ? 110 : size_.width / tabs.size();
        double left = (size_.width - pitch * tabs.size()) / 2;
        bool isSelected = true;
        for (const Tab& tab : tabs) {
            const Color& color = isSelected ? colors_.tint : colors_.secondaryText;
            addImage(*bar, tab.image, {{left + pitch / 2 - 15, 4}, {30, 28}}, color);
            addText(*bar, tab.title, centered(10, color, FontWeight::medium),
                    {{left, 34}, {pitch, 12}});
            left += pitch;
            isSelected = false;
        }
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
            const double columnWidth = (size_.width - 3 * kPadMargin) / 2;
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
        double free = size_.height - kTabBarHeight - bottomInset(context_.device) - top;
        for (const Group& group : kGroups) {
            free -= heightOf(group);
        }
        const double gap = snapToPixels(std::clamp(free / (kGroups.size() + 1), 0.0, kLargestGap),
                                        context_.scale());
        double y = top + gap;
        for (const Group& group : kGroups) {
            addGroup(group, {{0, y}, {size_.width, heightOf(group)}});
            y += heightOf(group) + gap;
        }
    }

    void addGroup(const Group& group, const Rect& frame) {
        const auto table = addView(window_, "UITableView", frame, colors_.card);
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
                addLine(*table, y, row.source == Source::none ? kRowMargin : kTextLeft);
            }
            addCell(*table, row, {{0, y}, {frame.size.width, kRowHeight}});
            y += kRowHeight;
        }
        if (!isPad()) {
            addLine(*table, 0);
            addLine(*table, frame.size.height - hairline());
        }
    }

    void addCell(platform::View& table, const Row& row, const Rect& frame) const {
        const auto cell = addView(table, "UITableViewCell", frame);
        cell->addSubview(
            makeImage(image(row.source, row.image, colors_.tint),
                      {{kRowMargin, (kRowHeight - kIconSide) / 2}, {kIconSide, kIconSide}},
                      context_.scale()));
        const double left = row.source == Source::none ? kRowMargin : kTextLeft;
        const double right = frame.size.width - kRowMargin;
        addText(*cell, row.title, textStyle(kRowTextSize, colors_.text),
                {{left, 0}, {right - left - 60, kRowHeight}});
        addText(*cell, row.detail, rightAligned(kRowTextSize, colors_.secondaryText),
                {{right - 18 - 140, 0}, {140, kRowHeight}});
        addAccessory(*cell, row.accessory, right);
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
                return addSwitch(cell, accessory == Accessory::on);
        }
    }

    // The user's picture, and buttons with images of the app's own bundle.
    void addButtons(platform::View& table, double groupWidth) const {
        constexpr double kPictureSide = 56;
        table.addSubview(makeImage(
            ask_.imageNamedWithTrait("ProfilePicture", traits_),
            {{kRowMargin, (kButtonsHeight - kPictureSide) / 2}, {kPictureSide, kPictureSide}},
            context_.scale()));
        const double left = kRowMargin + kPictureSide + 10;
        const double pitch = (groupWidth - left - 8) / static_cast<double>(kButtons.size());
        double x = left;
        for (const Button& button : kButtons) {
            const auto view = addView(table, "UIButton", {{x, 14}, {pitch, kButtonsHeight - 28}});
            view->addSubview(makeImage(ask_.imageNamedInBundleCompatibleWithTraitCollection(
                                           std::string(button.image), kAppBundle, traits_),
                                       {{(pitch - 36) / 2, 0}, {36, 36}}, context_.scale()));
            addText(*view, button.title, centered(12, colors_.secondaryText),
                    {{0, 42}, {pitch, 18}});
            x += pitch;
        }
    }

    const ToolkitLook& look_ = isAtLeast13() ? kLookOf13 : kLookOf12;
    // Nil before iOS 13.
    platform::ObjectRef configuration_ =
        isAtLeast13() ? std::make_shared<SymbolConfiguration>(kRowTextSize) : nullptr;
};

}  // namespace

void ControlsScreen::layoutViews() {
    for (const ViewRef& view : window().subviews()) {
        view->removeFromSuperview();
    }
    Builder(context(), window(), images()).build();
    AppScreen::layoutViews();
}

}  // namespace velmoranth::simulator
