#include "vector_files.h"

#include <fmt/core.h>

namespace velmoranth::desktop {

FileBytes bytesOf(std::string_view text) {
    return {text.begin(), text.end()};
}

std::size_t firstObject(std::size_t pageCount) {
    return 4 + 2 * pageCount;
}

FileBytes pdf(const std::vector<PdfPage>& pages, const std::vector<std::string>& objects,
              std::string_view trailer) {
    std::vector<std::string> all{"<</Type/Catalog/Pages 2 0 R>>"};
    std::string kids;
    for (std::size_t index = 0; index < pages.size(); ++index) {
        kids += fmt::format("{} 0 R ", 4 + 2 * index);
    }
    all.push_back(fmt::format("<</Type/Pages/Count {}/Kids[{}]>>", pages.size(), kids));
    all.emplace_back("<</Type/ExtGState/ca 0.5>>");
    for (const PdfPage& page : pages) {
        all.push_back(
            fmt::format("<</Type/Page/Parent 2 0 R/MediaBox[{}]/Contents {} 0 R"
                        "/Resources<</ExtGState<</GS 3 0 R>>/XObject<</X {} 0 R>>>>{}>>",
                        page.mediaBox, all.size() + 2, firstObject(pages.size()), page.more));
        all.push_back(
            fmt::format("<</Length {}>>stream\n{}\nendstream", page.content.size(), page.content));
    }
    all.insert(all.end(), objects.begin(), objects.end());

    std::string file = "%PDF-1.4\n";
    std::string table = fmt::format("xref\n0 {}\n0000000000 65535 f \n", all.size() + 1);
    for (std::size_t index = 0; index < all.size(); ++index) {
        table += fmt::format("{:010} 00000 n \n", file.size());
        file += fmt::format("{} 0 obj\n{}\nendobj\n", index + 1, all[index]);
    }
    const std::size_t start = file.size();
    file += table + fmt::format("trailer<</Size {}/Root 1 0 R{}>>\nstartxref\n{}\n%%EOF\n",
                                all.size() + 1, trailer, start);
    return bytesOf(file);
}

FileBytes svg(std::string_view attributes, std::string_view content) {
    return bytesOf(
        fmt::format("<svg xmlns=\"http://www.w3.org/2000/svg\" "
                    "xmlns:xlink=\"http://www.w3.org/1999/xlink\" {}>{}</svg>",
                    attributes, content));
}

Pixel pixel(const DrawnImage& image, std::uint32_t x, std::uint32_t y) {
    if (x >= image.width || y >= image.height ||
        image.bgra.size() != std::size_t{image.width} * image.height * 4) {
        return {-1, -1, -1, -1};
    }
    const std::uint8_t* bytes = image.bgra.data() + (std::size_t{y} * image.width + x) * 4;
    return {bytes[0], bytes[1], bytes[2], bytes[3]};
}

bool hasLibrary(std::string_view name) {
    return vectorLibraries().find("no " + std::string(name)) == std::string::npos;
}

}  // namespace velmoranth::desktop
