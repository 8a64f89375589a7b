#include "desktop/text/font_files.h"

#include "desktop/text/text.h"

#include <algorithm>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

namespace velmoranth::desktop {

namespace {

namespace fs = std::filesystem;

// Folders where distributions put a package's fonts, and how the names of its files begin.
struct FontPackage {
    std::vector<const char*> folders;
    std::vector<const char*> starts;
};

const std::vector<FontPackage>& packages() {
    static const std::vector<FontPackage> kList = {
        // The cut for large sizes is a family of its own, which no style asks for.
        {{"/usr/share/fonts/opentype/inter", "/usr/share/fonts/truetype/inter",
          "/usr/share/fonts/inter", "/usr/local/share/fonts"},
         {"Inter-"}},
        {{"/usr/share/fonts/truetype/liberation", "/usr/share/fonts/liberation"},
         {"LiberationSans", "LiberationSerif-", "LiberationMono-"}},
        {{"/usr/share/fonts/truetype/dejavu", "/usr/share/fonts/dejavu"},
         {"DejaVuSans.", "DejaVuSans-Bold.", "DejaVuSansMono.", "DejaVuSansMono-Bold.",
          "DejaVuSerif.", "DejaVuSerif-Bold."}},
        {{"/usr/share/fonts/truetype/quicksand", "/usr/share/fonts/quicksand"}, {"Quicksand-"}},
        {{"/usr/share/fonts/opentype/comic-neue", "/usr/share/fonts/comic-neue"}, {"ComicNeue-"}},
        {{"/usr/share/fonts/opentype/dancingscript", "/usr/share/fonts/dancingscript"},
         {"DancingScript-"}},
        {{"/usr/share/fonts/truetype/noto", "/usr/share/fonts/noto"},
         {"NotoSansArabic-", "NotoSansHebrew-", "NotoSansDevanagari-", "NotoSansThai-",
          "NotoSansBengali-", "NotoSansTamil-", "NotoSansTelugu-", "NotoSansGujarati-",
          "NotoSansGurmukhi-", "NotoSansKannada-", "NotoSansMalayalam-", "NotoSansOriya-",
          "NotoSansSinhala-", "NotoSansKhmer-", "NotoSansLao-", "NotoSansMyanmar-",
          "NotoSansArmenian-", "NotoSansGeorgian-", "NotoSansEthiopic-"}},
        {{"/usr/share/fonts/truetype/wqy", "/usr/share/fonts/wqy"}, {"wqy-microhei."}},
    };
    return kList;
}

// "Inter" stays the name in a TextStyle for the system face, whatever draws it.
struct Choice {
    std::vector<std::string> folders;  // empty: those of the packages
    std::string systemFamily = "Inter";
};

Choice& choice() {
    static Choice chosen;
    return chosen;
}

bool isFontFile(const fs::path& path) {
    const std::string extension = path.extension();
    return extension == ".otf" || extension == ".ttf" || extension == ".ttc";
}

// Whether a file of this name is wanted; no starts at all want everything.
bool isWanted(const std::string& name, const std::vector<const char*>& starts) {
    return starts.empty() || std::any_of(starts.begin(), starts.end(), [&name](const char* start) {
               return name.starts_with(start);
           });
}

void addFiles(const std::string& folder, const std::vector<const char*>& starts,
              std::vector<std::string>& files) {
    std::error_code failed;
    const std::size_t first = files.size();
    for (fs::directory_iterator entry(folder, failed), end; !failed && entry != end;
         entry.increment(failed)) {
        if (isFontFile(entry->path()) && isWanted(entry->path().filename(), starts)) {
            files.push_back(entry->path());
        }
    }
    std::sort(files.begin() + static_cast<std::ptrdiff_t>(first), files.end());
}

}  // namespace

void setFontFolders(std::vector<std::string> folders, std::string family) {
    choice() = {std::move(folders), std::move(family)};
}

std::vector<std::string> fontFiles() {
    std::vector<std::string> files;
    for (const std::string& folder : choice().folders) {
        addFiles(folder, {}, files);
    }
    if (!choice().folders.empty()) {
        return files;
    }
    for (const FontPackage& package : packages()) {
        for (const char* const folder : package.folders) {
            addFiles(folder, package.starts, files);
        }
    }
    return files;
}

const std::string& systemFamily() {
    return choice().systemFamily;
}

const char* fallbackFamilies() {
    // Arabic and Hebrew have letters in DejaVu as well; those of Noto go better with the rest.
    return "Noto Sans Arabic,Noto Sans Hebrew,Noto Sans Devanagari,Noto Sans Thai,"
           "WenQuanYi Micro Hei,DejaVu Sans";
}

}  // namespace velmoranth::desktop
