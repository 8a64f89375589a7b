#include "tests/support/test_device.h"

#include "desktop/files/create_device_root.h"
#include "desktop/imaging/bitmap_image.h"
#include "desktop/services/services.h"

#include "record/recorded_services.h"
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <deque>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace velmoranth::tests {

namespace {

std::string makeTemporaryFolder() {
    ::umask(022);  // what is made in it has the usual modes
    std::string name = std::filesystem::temp_directory_path() / "velmoranth-device-XXXXXX";
    if (::mkdtemp(name.data()) == nullptr) {
        throw std::runtime_error("no temporary folder");
    }
    return name;
}

std::shared_ptr<desktop::DeviceRoot> makeRoot(const std::string& folder) {
    auto root = desktop::createDeviceRoot(folder);
    if (!root) {
        throw std::runtime_error(desktop::toLine(root.error()));
    }
    return *root;
}

std::uint8_t premultiplied(std::uint8_t component, std::uint8_t alpha) {
    return static_cast<std::uint8_t>((component * alpha + 127) / 255);
}

platform::Data premultipliedBgra(const Pixels& pixels) {
    platform::Data bytes;
    bytes.reserve(pixels.values.size() * 4);
    for (const Pixel& pixel : pixels.values) {
        bytes.push_back(premultiplied(pixel.blue, pixel.alpha));
        bytes.push_back(premultiplied(pixel.green, pixel.alpha));
        bytes.push_back(premultiplied(pixel.red, pixel.alpha));
        bytes.push_back(pixel.alpha);
    }
    return bytes;
}

}  // namespace

Pixels solid(std::size_t width, std::size_t height, Pixel pixel) {
    return {width, height, std::vector<Pixel>(width * height, pixel)};
}

Pixels pattern(std::size_t width, std::size_t height) {
    Pixels pixels = solid(width, height, {});
    for (std::size_t y = 0; y < height; ++y) {
        for (std::size_t x = 0; x < width; ++x) {
            pixels.at(x, y) = {static_cast<std::uint8_t>(x * 7 + y * 3),
                               static_cast<std::uint8_t>(x * 5 + y * 11),
                               static_cast<std::uint8_t>(x * 13 + y), 255};
        }
    }
    return pixels;
}

Pixels drawnPixels(const platform::BitmapImageRef& bitmap) {
    const auto drawn = desktop::DesktopBitmapImage::of(bitmap);
    if (drawn == nullptr) {
        return {};
    }
    const desktop::PixelView view = drawn->pixels();
    Pixels pixels = solid(drawn->size().width, drawn->size().height, {});
    for (std::size_t y = 0; y < pixels.height; ++y) {
        for (std::size_t x = 0; x < pixels.width; ++x) {
            const std::uint8_t* at = view.data + y * view.bytesPerRow + x * 4;
            pixels.at(x, y) = {at[2], at[1], at[0], at[3]};
        }
    }
    return pixels;
}

Pixels drawnPixels(const platform::ImageRef& image) {
    return drawnPixels(platform::bitmapOf(image));
}

int TestLibSystem::chmod(const std::string& path, unsigned mode) {
    return path.empty() ? ::chmod("", mode) : ::chmod((hostFolder + path).c_str(), mode);
}

int TestLibSystem::mkdir(const std::string& path, unsigned mode) {
    return ::mkdir((hostFolder + path).c_str(), mode);
}

struct TestDevice::Services {
    Services(TestDevice& device, double scale)
        : real(makeRoot(device.hostFolder_),
               {.screenScale = scale, .siblings = desktop::ScaledSiblings::off}, nullptr),
          files(real.fileManager()),
          platform{.objc = device.runtime,
                   .substrate = device.runtime,
                   .coreFoundation = device.system,
                   .darwinNotifications = device.notifications,
                   .propertyLists = real.propertyLists(),
                   .fileManager = files,
                   .bundles = device.bundles,
                   .catalogClass = device.catalogClass,
                   .dates = device.dates,
                   .log = log,
                   .libSystem = device.libSystem,
                   .coreGraphics = real.coreGraphics(),
                   .images = real.images(),
                   .imageContexts = real.imageContexts(),
                   .fonts = real.fonts(),
                   .views = real.views(),
                   .device = device.idiom,
                   .screen = device.screen,
                   .springBoard = device.springBoard,
                   .audio = device.audio,
                   .alerts = alerts,
                   .application = device.application} {}

    // Those that tests look into by themselves stay as they are, unless a test has brought them.
    void record(const platform::Platform& all, const ReplacedServices& brought = {}) {
        recorded.emplace_back(all, nullptr);
        const platform::Platform& own = recorded.back().platform();
        platform::setPlatform({.objc = own.objc,
                               .substrate = own.substrate,
                               .coreFoundation = brought.coreFoundation == nullptr
                                                     ? all.coreFoundation
                                                     : own.coreFoundation,
                               .darwinNotifications = own.darwinNotifications,
                               .propertyLists = own.propertyLists,
                               .fileManager = own.fileManager,
                               .bundles = own.bundles,
                               .catalogClass = own.catalogClass,
                               .dates = own.dates,
                               .log = own.log,
                               .libSystem = own.libSystem,
                               .coreGraphics = own.coreGraphics,
                               .images = own.images,
                               .imageContexts = own.imageContexts,
                               .fonts = own.fonts,
                               .views = own.views,
                               .device = brought.device == nullptr ? all.device : own.device,
                               .screen = all.screen,
                               .springBoard = all.springBoard,
                               .audio = own.audio,
                               .alerts = own.alerts,
                               .application = own.application});
    }

    desktop::Services real;
    FailingFileManager files;
    DroppedLog log;
    desktop::DesktopAlerts alerts;
    const platform::Platform platform;
    std::deque<record::RecordedServices> recorded;  // the last one is in use
};

TestDevice::TestDevice(double screenScale)
    : runtime([this](const std::string& line) { journal.write("warning: " + line); }),
      screen(screenScale),
      audio([this](const std::string& path) {
          return std::filesystem::is_regular_file(hostFolder_ + path);
      }),
      hostFolder_(makeTemporaryFolder()),
      inEngine_(std::in_place),
      libSystem(hostFolder_) {
    services_ = std::make_unique<Services>(*this, screenScale);
    services_->real.images().setSendApplicationIconImage(
        [this](const platform::NullableString& identifier, int format, double scale) {
            return runtime.sendToClass<platform::ImageRef, platform::NullableString, int, double>(
                "UIImage", "_applicationIconImageForBundleIdentifier:format:scale:", identifier,
                format, scale);
        });
    services_->record(services_->platform);
}

TestDevice::~TestDevice() {
    std::error_code ignored;
    std::filesystem::remove_all(hostFolder_, ignored);
}

void TestDevice::file(const std::string& path, const std::string& contents) const {
    const std::filesystem::path host(hostFolder_ + path);
    std::filesystem::create_directories(host.parent_path());
    std::ofstream(host, std::ios::binary) << contents;
}

void TestDevice::png(const std::string& path, const Pixels& pixels) const {
    const platform::Data bytes = desktop::encodePng(premultipliedBgra(pixels), pixels.width,
                                                    pixels.height, pixels.width * 4);
    file(path, std::string(bytes.begin(), bytes.end()));
}

void TestDevice::folder(const std::string& path) const {
    std::filesystem::create_directories(hostFolder_ + path);
}

void TestDevice::remove(const std::string& path) const {
    std::filesystem::remove_all(hostFolder_ + path);
}

bool TestDevice::exists(const std::string& path) const {
    return std::filesystem::exists(hostFolder_ + path);
}

std::string TestDevice::contents(const std::string& path) const {
    std::ifstream stream(hostFolder_ + path, std::ios::binary);
    if (!stream) {
        return "<none>";
    }
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
}

unsigned TestDevice::mode(const std::string& path) const {
    struct stat status{};
    return ::stat((hostFolder_ + path).c_str(), &status) == 0 ? status.st_mode & 07777U : 0U;
}

void TestDevice::preferences(const platform::Dictionary& preferences) const {
    const platform::Data bytes = desktop::writeXmlPropertyList(preferences);
    file("/User/Library/Preferences/com.qor.velmoranthprefs.plist",
         std::string(bytes.begin(), bytes.end()));
}

void TestDevice::activeThemes(const std::vector<std::string>& names,
                              const platform::Dictionary& more) const {
    platform::Dictionary all = more;
    all.insert_or_assign("ActiveThemes", platform::PropertyList(platform::PropertyList::Array(
                                             names.begin(), names.end())));
    preferences(all);
}

platform::ImageRef TestDevice::image(const Pixels& pixels, double scale) const {
    return services_->real.images().makeImage(
        desktop::DesktopBitmapImage::createPremultiplied(
            std::make_shared<const platform::Data>(premultipliedBgra(pixels)),
            {pixels.width, pixels.height}, pixels.width * 4),
        scale);
}

void TestDevice::useServices(const ReplacedServices& replaced) {
    services_->record(withServices(services_->platform, replaced), replaced);
}

const platform::Platform& TestDevice::services() const {
    return services_->platform;
}

void TestDevice::stopRecording() {
    platform::setPlatform(services_->platform);
    record::Recorder::setCurrent(nullptr);
    inEngine_.reset();
}

FailingFileManager& TestDevice::fileManager() {
    return services_->files;
}

desktop::AnimationClock& TestDevice::clock() const {
    return services_->real.views().clock();
}

desktop::DesktopImages& TestDevice::images() const {
    return services_->real.images();
}

}  // namespace velmoranth::tests
