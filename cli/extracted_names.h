// How names of a catalog become names of files. A name may hold any bytes; what it becomes lies
// below the folder it is put into, can be typed, and is that of no other name.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace velmoranth::cli {

// The longest path that is given, and the longest part of it between slashes. Bytes.
inline constexpr std::size_t kLongestExtractedPath = 1000;
inline constexpr std::size_t kLongestExtractedPart = 255;

// What becomes of a slash in a name.
enum class Slashes { makeFolders, areSpelled };

// The relative path of the file that the system names `name` + `ending` ("Folder/Icon" and
// "-20-20.png"). Slashes make folders or are spelled, and nearly every name stays as it is. The
// rest is spelled with %XX, a byte in hexadecimal: folders "." and "..", a slash that has no name
// before it, control characters, bytes that are no UTF-8, a % that could be taken for such a
// spelling, and the full stop of a folder that would be named like a picture. A name that is too
// long is cut, its slashes spelled as well, and goes on with "%~" and `number`, the place of the
// name in its catalog. The ending is at most 200 bytes long.
[[nodiscard]] std::string extractedPath(std::string_view name, std::string_view ending,
                                        std::size_t number, Slashes slashes = Slashes::makeFolders);

}  // namespace velmoranth::cli
