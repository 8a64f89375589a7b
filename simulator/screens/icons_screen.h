// Every app's icon with its identifier below, on sheets: as the home screen shows it, asked for by
// the messages of its own views.
#pragma once

#include "simulator/home_screen/apps.h"
#include "simulator/screens/app_screen.h"

#include <vector>

namespace velmoranth::simulator {

class IconsScreen final : public AppScreen {
  public:
    // The apps are the context's, in the order of their identifiers; none has a badge.
    explicit IconsScreen(const ScreenContext& context);

    void showPage(int page) override;

    [[nodiscard]] int page() const override { return page_; }

    [[nodiscard]] int pageCount() const override;

    // Of the sheet that is shown, row by row; a label is the identifier.
    [[nodiscard]] std::vector<ShownIcon> shownIcons() const override;

  private:
    // The top left of an icon of a sheet, by its number on it.
    [[nodiscard]] platform::Point placeOf(std::size_t index) const;
    [[nodiscard]] std::span<const App> shownApps() const;
    void addIdentifier(const App& app, const platform::Point& icon);

    std::vector<App> apps_;
    std::size_t columns_;
    std::size_t rows_;
    double pitch_;  // from one icon's left to the next one's, points
    int page_ = 0;
};

}  // namespace velmoranth::simulator
