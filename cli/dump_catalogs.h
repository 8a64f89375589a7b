// Pictures of asset catalogs for the places of a skeleton: what a phone itself has under the names
// that are asked for.
#pragma once

#include "desktop/catalog/catalog.h"
#include "desktop/result/result.h"
#include "simulator/device.h"
#include "simulator/screens/question_rows.h"

#include "makers/skeleton/skeleton.h"

#include <string>
#include <vector>

namespace velmoranth::cli {

class DumpCatalog {
  public:
    // A catalog file, or the folder of a bundle that has one, as for `velmoranth extract`. A note
    // of what was assumed, and what is wrong with single entries, are said.
    [[nodiscard]] static desktop::Result<DumpCatalog> open(const std::string& input);

    // The images of its bundle, each by its name; none for a catalog whose bundle is not known, of
    // which those count that some other place asks for.
    [[nodiscard]] std::vector<simulator::Question> questions() const;

    // As the user gave it; Place::from of the pictures that come from it.
    [[nodiscard]] const std::string& input() const { return input_; }

    // For a catalog of which the theme has nothing: why, and what to do.
    [[nodiscard]] std::string whyNothing() const;

    // Gives the place the picture of its name that the catalog has for such a device, or says why
    // there is none. Nothing changes for a place that asks for a name of another bundle.
    void answer(makers::Place& place, const simulator::DeviceConfiguration& device) const;

  private:
    DumpCatalog(std::string input, std::string bundle, catalog::Catalog catalog)
        : input_(std::move(input)), bundle_(std::move(bundle)), catalog_(std::move(catalog)) {}

    [[nodiscard]] std::vector<const catalog::Rendition*> renditionsFor(
        const catalog::Facet& facet, const simulator::DeviceConfiguration& device) const;

    std::string input_;
    std::string bundle_;  // identifier; "" where it is not known
    catalog::Catalog catalog_;
};

}  // namespace velmoranth::cli
