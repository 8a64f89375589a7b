// Property lists: binary, XML and old-style text (with its brace-less ".strings" form), told apart
// by content, with the platform's rules of what is accepted. Input is hostile: size, nesting and
// what a file may expand to are bounded before memory is spent.
#pragma once

#include "desktop/files/device_root.h"
#include "desktop/result/result.h"
#include "platform/foundation.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

namespace velmoranth::desktop {

// Larger files are refused unread.
inline constexpr std::size_t kMaxPropertyListBytes = std::size_t{16} * 1024 * 1024;
// Containers in containers. Old-style text has a limit of the platform's own; the other forms are
// read there as deep as the stack bears, a megabyte on the main thread. Here what copies, compares
// and writes a value goes as deep on a stack of eight, a sanitizer's larger frames included.
inline constexpr int kMaxOldStyleDepth = 512;
inline constexpr int kMaxPropertyListDepth = 2048;

// The problem says what is wrong and, for text, at which line and column; for binary, at which
// byte. An empty file is no property list; one of white space and comments alone is an empty
// dictionary. Integers beyond std::int64_t up to std::uint64_t are read as the greatest
// std::int64_t.
[[nodiscard]] Result<platform::PropertyList> parsePropertyList(std::span<const std::uint8_t> bytes);

// As the platform writes one: tabs, keys in ascending order.
[[nodiscard]] platform::Data writeXmlPropertyList(const platform::PropertyList& value);

// A file of the device; the problem's path is the device path.
[[nodiscard]] Result<platform::PropertyList> readPropertyList(const DeviceRoot& root,
                                                              const std::string& devicePath);

class DesktopPropertyLists : public platform::PropertyLists {
  public:
    explicit DesktopPropertyLists(std::shared_ptr<const DeviceRoot> root);

    [[nodiscard]] std::optional<platform::Dictionary> dictionaryWithContentsOfFile(
        const std::string& path) override;
    [[nodiscard]] std::optional<platform::PrintableDictionary>
    printableDictionaryWithContentsOfFile(const std::string& path) override;

  private:
    std::shared_ptr<const DeviceRoot> root_;
};

}  // namespace velmoranth::desktop
