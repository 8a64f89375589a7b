// A catalog that a test has made, opened, with the bytes that it reads from.
#pragma once

#include "desktop/catalog/catalog.h"
#include "tests/support/catalog/car_writer.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace velmoranth::catalog {

class Opened {
  public:
    explicit Opened(const tests::CarWriter& car, const Limits& limits = {})
        : Opened(car.build(), limits) {}

    explicit Opened(tests::ByteVector bytes, const Limits& limits = {})
        : bytes_(std::move(bytes)), catalog_(Catalog::fromBytes(bytes_, "Assets.car", limits)) {
        EXPECT_TRUE(catalog_) << (catalog_ ? "" : catalog_.error().message);
    }

    const Catalog& operator*() const { return *catalog_; }

    const Catalog* operator->() const { return &*catalog_; }

    // The only rendition that a facet of that name has.
    [[nodiscard]] const Rendition& only(const std::string& name) const {
        const Facet* facet = catalog_->facet(name);
        EXPECT_NE(facet, nullptr) << name;
        const auto places = catalog_->renditionsOf(*facet);
        EXPECT_EQ(places.size(), 1U) << name;
        return catalog_->renditions()[places.front()];
    }

  private:
    tests::ByteVector bytes_;
    Result<Catalog> catalog_;
};

}  // namespace velmoranth::catalog
