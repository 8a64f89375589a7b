// What the names of a theme's pictures say.
#pragma once

#include <string>
#include <string_view>

namespace velmoranth::makers {

// Of ASCII letters.
[[nodiscard]] std::string lowerCase(std::string_view text);

// "a/b/c.png" is "a/b" and "c.png"; without a slash the folder is "".
[[nodiscard]] std::string_view folderOf(std::string_view path);
[[nodiscard]] std::string_view fileOf(std::string_view path);

// Below a folder: "" or "folder/".
[[nodiscard]] std::string inFolder(std::string_view folder, std::string_view file);

[[nodiscard]] bool isPng(std::string_view path);

// By its name, a picture of another format, which no theme's picture is looked for in.
[[nodiscard]] bool isOtherPicture(std::string_view path);

// The name that such a picture has as a PNG file; any other path as it is.
[[nodiscard]] std::string asPng(std::string_view path);

// "Name@2x~ipad.png", "Name~ipad@2x.png" and so on.
struct PictureName {
    std::string base;         // without any of it: "Name"
    int scale = 1;            // the largest where there are several
    std::string device = {};  // "iphone", "ipad", "ipadpro", or ""

    [[nodiscard]] bool isPlain() const { return scale == 1 && device.empty(); }
};

// Of a .png, in whatever letter case its ending is; its folder does not count.
[[nodiscard]] PictureName pictureName(std::string_view path);

// The name in its folder without scale and device: "a/b.png" of "a/b@2x~ipad.png".
[[nodiscard]] std::string plainName(std::string_view path);

}  // namespace velmoranth::makers
