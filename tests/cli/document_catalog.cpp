// Writes the asset catalog that the commands in the documents read.
#include "tests/support/catalog/car_writer.h"

#include <cstdint>
#include <fstream>
#include <ios>

int main(int argc, char** argv) {
    namespace tests = velmoranth::tests;
    constexpr std::uint16_t kUniversal = 0;
    constexpr std::uint16_t kPhone = 1;
    constexpr std::uint16_t kPad = 2;
    tests::CarWriter car;
    const auto add = [&car](std::uint16_t identifier, std::uint16_t idiom, std::uint16_t scale,
                            std::uint16_t side) {
        car.bitmap({.identifier = identifier, .scale = scale, .idiom = idiom},
                   tests::CarPixels::pattern(side, side));
    };
    car.facet("Icon", 1);
    add(1, kUniversal, 2, 58);
    add(1, kPhone, 2, 58);
    add(1, kPad, 2, 58);
    car.facet("Pin", 2);
    add(2, kPhone, 3, 66);
    add(2, kUniversal, 2, 44);
    car.facet("UINavigationBarBack", 3);
    add(3, kUniversal, 3, 36);
    const auto bytes = car.build();
    std::ofstream file(argc == 2 ? argv[1] : "", std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    return file.flush() ? 0 : 1;
}
