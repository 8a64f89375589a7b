#include "cli/preview_drawing.h"

#include "cli/device_check.h"
#include "cli/late_progress.h"
#include "cli/messages.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <future>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace velmoranth::cli {

using desktop::Result;
using simulator::RenderedScreen;
using simulator::ScreenRequest;

namespace {

// What the picture of it is called.
std::string captionOf(const DeviceOfRun& device) {
    return device.themes.empty() ? "Themed" : fmt::format("{}", fmt::join(device.themes, " + "));
}

// Shows how many are done until all workers have ended.
void watch(std::vector<std::future<void>>& workers, const std::atomic<std::size_t>& done,
           std::size_t count, std::string_view noun) {
    constexpr std::chrono::milliseconds kLookEvery{100};
    LateProgress progress;
    for (std::future<void>& worker : workers) {
        while (worker.wait_for(kLookEvery) != std::future_status::ready) {
            progress.show(done, count, noun);
        }
    }
    progress.clear();
    for (std::future<void>& worker : workers) {
        worker.get();
    }
}

}  // namespace

ScreenRequest requestFor(const PreviewOptions& options, const DeviceOfRun& device,
                         const ScreenOptions& screen,
                         const simulator::DeviceConfiguration& configuration) {
    ScreenRequest request;
    request.device = configuration;
    request.deviceFiles = device.root->files();
    request.page = screen.page;
    request.screen = screen.kind;
    request.item = screen.item;
    request.folderPage = screen.folderPage;
    request.wallpaperFile = screen.wallpaper;
    request.apps = screen.apps;
    request.logDestination = options.log;
    request.loadEngine = options.kind != PreviewKind::stock;
    request.isRecorded = options.isJson && request.loadEngine;
    return request;
}

ScreenRequest requestFor(const PreviewOptions& options, const DeviceOfRun& device) {
    return requestFor(options, device, options.screen, options.device);
}

Result<void> checkPages(const PreviewOptions& options, const RenderedScreen& screen) {
    const ScreenOptions& wanted = options.screen;
    if (screen.page != wanted.page && wanted.item.empty()) {
        return misuse(
            fmt::format("there is no page {}; the last is {}", wanted.page, screen.pageCount));
    }
    if (screen.folder && screen.folder->page != wanted.folderPage) {
        return misuse(fmt::format("the folder has no page {}; its last is {}", wanted.folderPage,
                                  screen.folder->pageCount));
    }
    return {};
}

Result<DrawnPage> drawPage(const PreviewOptions& options, const DeviceOfRun& device,
                           const ScreenRequest& request) {
    auto screen = simulator::renderScreen(request);
    if (!screen) {
        return tl::unexpected(std::move(screen.error()));
    }
    DrawnPage page{.screen = std::move(*screen), .picture = {}, .place = {}};
    page.picture = std::move(page.screen.picture);
    page.place = {.width = page.picture.width, .height = page.picture.height};
    if (options.kind == PreviewKind::sideBySide) {
        ScreenRequest stockRequest = request;
        stockRequest.loadEngine = false;
        stockRequest.isRecorded = false;
        const auto stock = simulator::renderScreen(stockRequest);
        if (!stock) {
            return tl::unexpected(stock.error());
        }
        const CaptionedRow row{
            .pictures = {{stock->picture, "Stock"}, {page.picture, captionOf(device)}}};
        Arranged both = inRows({&row, 1});
        page.picture = std::move(both.picture);
        page.place = both.places.back();
    }
    return page;
}

Result<void> doAtOnce(std::size_t count, std::string_view noun,
                      const std::function<Result<void>(std::size_t index)>& work) {
    std::vector<Result<void>> results(count);
    std::atomic<std::size_t> next = 0;
    std::atomic<std::size_t> done = 0;
    std::atomic<bool> hasFailed = false;
    const auto doSome = [&] {
        for (std::size_t i = next++; i < count && !hasFailed; i = next++) {
            results[i] = work(i);
            hasFailed = hasFailed || !results[i];
            ++done;
        }
    };
    std::vector<std::future<void>> workers;
    const std::size_t wanted =
        std::min<std::size_t>(count, std::max(1U, std::thread::hardware_concurrency()));
    try {
        while (workers.size() < wanted) {
            workers.push_back(std::async(std::launch::async, doSome));
        }
    } catch (const std::system_error&) {
        if (workers.empty()) {  // no thread is to be had
            doSome();
        }
    }
    watch(workers, done, count, noun);
    for (Result<void>& result : results) {
        if (!result) {
            return std::move(result);
        }
    }
    return {};
}

Result<DeviceOfRun> deviceFor(const PreviewOptions& options) {
    if (options.root.empty()) {
        return makeDevice(options.themes, options.settings);
    }
    auto root = openDevice(options.root);
    if (!root) {
        return tl::unexpected(std::move(root.error()));
    }
    if (options.kind != PreviewKind::stock) {
        warnOfPreferences(**root);
    }
    DeviceOfRun device{.root = *root};
    device.hidden = [root = std::move(*root)] { return hiddenPicturesOn(*root); };
    return device;
}

ShownScreen shownOn(const PreviewOptions& options, const RenderedScreen& screen) {
    return shownScreen(screen, options.screen.kind, {options.deviceName, options.device},
                       {.width = screen.picture.width, .height = screen.picture.height});
}

}  // namespace velmoranth::cli
