#include "record/recorded_files.h"

#include "record/recorded_calls.h"

namespace velmoranth::record {

using platform::Failure;
using platform::FileExistence;

namespace {

// Takes down a reader's answer, "" for nil, with the files that it tried: those beside the path
// have the path as an argument. A reader that does not tell tried the path itself.
void addRead(std::string_view message, const std::string& path, const std::string& answer,
             platform::FileManager& files) {
    std::vector<TriedFile> tried = takeTried();
    if (tried.empty()) {
        tried.push_back({path, answer.empty() ? "it cannot be read" : ""});
    }
    for (TriedFile& file : tried) {
        Entry entry{.kind = EntryKind::found,
                    .message = std::string(message),
                    .subject = std::move(file.path),
                    .answer = answer};
        if (entry.subject != path) {
            entry.arguments.push_back(words(path));
        }
        if (!file.problem.empty()) {
            const FileExistence existence = files.fileExistsAtPathIsDirectory(entry.subject);
            entry.kind = existence.exists ? EntryKind::unreadable : EntryKind::missing;
            entry.answer = kNil;
            if (existence.exists) {
                entry.reason = existence.isDirectory ? "it is a folder" : std::move(file.problem);
            }
        }
        add(std::move(entry));
    }
}

template <class Read>
auto recordedRead(std::string_view message, const std::string& path, platform::FileManager& files,
                  Read&& read) {
    static_cast<void>(takeTried());
    auto result = read();
    addRead(message, path, result ? words(result) : std::string(), files);
    return result;
}

void addExistence(std::string_view message, const std::string& path, const FileExistence& answer) {
    add({.kind = answer.exists ? EntryKind::found : EntryKind::missing,
         .message = std::string(message),
         .subject = path,
         .answer = words(answer)});
}

}  // namespace

bool RecordedFileManager::fileExistsAtPath(const std::string& path) {
    const bool exists = real_.fileExistsAtPath(path);
    add({.kind = exists ? EntryKind::found : EntryKind::missing,
         .message = std::string(messageOf("FileManager", "fileExistsAtPath")),
         .subject = path,
         .answer = words(exists)});
    return exists;
}

FileExistence RecordedFileManager::fileExistsAtPathIsDirectory(const std::string& path) {
    const FileExistence answer = real_.fileExistsAtPathIsDirectory(path);
    addExistence(messageOf("FileManager", "fileExistsAtPathIsDirectory"), path, answer);
    return answer;
}

Failure RecordedFileManager::setPosixPermissionsOfItemAtPath(unsigned mode,
                                                             const std::string& path) {
    return recordedChange(messageOf("FileManager", "setPosixPermissionsOfItemAtPath"), path,
                          {wordsOfMode(mode)},
                          [&] { return real_.setPosixPermissionsOfItemAtPath(mode, path); });
}

Failure RecordedFileManager::copyItemAtPathToPath(const std::string& source,
                                                  const std::string& destination) {
    return recordedChange(messageOf("FileManager", "copyItemAtPathToPath"), destination,
                          {words(source)},
                          [&] { return real_.copyItemAtPathToPath(source, destination); });
}

Failure RecordedFileManager::moveItemAtPathToPath(const std::string& source,
                                                  const std::string& destination) {
    return recordedChange(messageOf("FileManager", "moveItemAtPathToPath"), destination,
                          {words(source)},
                          [&] { return real_.moveItemAtPathToPath(source, destination); });
}

Failure RecordedFileManager::removeItemAtPath(const std::string& path) {
    return recordedChange(messageOf("FileManager", "removeItemAtPath"), path, {},
                          [&] { return real_.removeItemAtPath(path); });
}

bool RecordedFileManager::createFileAtPathContents(const std::string& path,
                                                   const platform::Data& contents) {
    return recordedChange(messageOf("FileManager", "createFileAtPathContents"), path,
                          {words(contents)},
                          [&] { return real_.createFileAtPathContents(path, contents); });
}

Failure RecordedFileManager::createDirectoryAtPathWithIntermediateDirectories(
    const std::string& path) {
    return recordedChange(
        messageOf("FileManager", "createDirectoryAtPathWithIntermediateDirectories"), path, {},
        [&] { return real_.createDirectoryAtPathWithIntermediateDirectories(path); });
}

bool RecordedFileManager::writeToFileAtomically(const platform::Data& contents,
                                                const std::string& path) {
    return recordedChange(messageOf("FileManager", "writeToFileAtomically"), path,
                          {words(contents)},
                          [&] { return real_.writeToFileAtomically(contents, path); });
}

std::optional<platform::Data> RecordedFileManager::dataWithContentsOfFile(const std::string& path) {
    return recordedRead(messageOf("FileManager", "dataWithContentsOfFile"), path, real_,
                        [&] { return real_.dataWithContentsOfFile(path); });
}

std::optional<platform::Dictionary> RecordedPropertyLists::dictionaryWithContentsOfFile(
    const std::string& path) {
    return recordedRead(messageOf("PropertyLists", "dictionaryWithContentsOfFile"), path, files_,
                        [&] { return real_.dictionaryWithContentsOfFile(path); });
}

std::optional<platform::PrintableDictionary>
RecordedPropertyLists::printableDictionaryWithContentsOfFile(const std::string& path) {
    return recordedRead(messageOf("PropertyLists", "printableDictionaryWithContentsOfFile"), path,
                        files_, [&] { return real_.printableDictionaryWithContentsOfFile(path); });
}

platform::BundleRef RecordedBundles::bundleWithPath(const std::string& path) {
    return recorded(messageOf("Bundles", "bundleWithPath"), {words(path)},
                    [&] { return real_.bundleWithPath(path); });
}

bool RecordedBundles::load(const platform::BundleRef& bundle) {
    return recorded(messageOf("Bundles", "load"), {words(bundle)},
                    [&] { return real_.load(bundle); });
}

platform::OpenedCatalog RecordedCatalogClass::initWithURL(const platform::ClassRef& cls,
                                                          const std::string& path) {
    return recorded(messageOf("CatalogClass", "initWithURL"), {words(path)},
                    [&] { return real_.initWithURL(cls, path); });
}

platform::CUICatalogRef RecordedCatalogClass::defaultUICatalogForBundle(
    const platform::ClassRef& cls, const platform::BundleRef& bundle) {
    return recorded(messageOf("CatalogClass", "defaultUICatalogForBundle"), {words(bundle)},
                    [&] { return real_.defaultUICatalogForBundle(cls, bundle); });
}

platform::OpenedCatalog RecordedCatalogClass::initWithNameFromBundle(
    const platform::ClassRef& cls, const std::string& name, const platform::BundleRef& bundle) {
    return recorded(messageOf("CatalogClass", "initWithNameFromBundle"),
                    {words(name), words(bundle)},
                    [&] { return real_.initWithNameFromBundle(cls, name, bundle); });
}

platform::ImageRef RecordedImages::imageWithContentsOfFile(const std::string& path) {
    return recordedRead(messageOf("Images", "imageWithContentsOfFile"), path, files_,
                        [&] { return real_.imageWithContentsOfFile(path); });
}

platform::ImageRef RecordedImages::imageWithCGImage(const platform::BitmapImageRef& bitmap) {
    return recorded(messageOf("Images", "imageWithCGImage"), {words(bitmap)},
                    [&] { return real_.imageWithCGImage(bitmap); });
}

void RecordedImages::drawInRect(const platform::ImageRef& image, const platform::Rect& rect) {
    recorded(messageOf("Images", "drawInRect"), {words(image), words(rect)},
             [&] { real_.drawInRect(image, rect); });
}

std::optional<platform::Data> RecordedImages::pngRepresentation(const platform::ImageRef& image) {
    return recorded(messageOf("Images", "pngRepresentation"), {words(image)},
                    [&] { return real_.pngRepresentation(image); });
}

platform::ImageRef RecordedImages::applicationIconImageForBundleIdentifierFormatScale(
    const platform::NullableString& bundleIdentifier, int format, double scale) {
    return recorded(messageOf("Images", "applicationIconImageForBundleIdentifierFormatScale"),
                    {words(bundleIdentifier), words(format), words(scale)}, [&] {
                        return real_.applicationIconImageForBundleIdentifierFormatScale(
                            bundleIdentifier, format, scale);
                    });
}

platform::AudioSessionRef RecordedAudio::sharedInstance() {
    return recorded(messageOf("Audio", "sharedInstance"), {},
                    [&] { return real_.sharedInstance(); });
}

platform::AudioPlayerRef RecordedAudio::audioPlayerWithContentsOfURL(const std::string& path) {
    return recordedRead(messageOf("Audio", "audioPlayerWithContentsOfURL"), path, files_,
                        [&] { return real_.audioPlayerWithContentsOfURL(path); });
}

platform::AudioPlayerRef RecordedAudio::audioPlayerWithData(
    const std::optional<platform::Data>& data) {
    return recorded(messageOf("Audio", "audioPlayerWithData"), {words(data)},
                    [&] { return real_.audioPlayerWithData(data); });
}

int RecordedLibSystem::setuid(unsigned id) {
    return recorded(messageOf("LibSystem", "setuid"), {words(id)},
                    [&] { return real_.setuid(id); });
}

int RecordedLibSystem::setgid(unsigned id) {
    return recorded(messageOf("LibSystem", "setgid"), {words(id)},
                    [&] { return real_.setgid(id); });
}

int RecordedLibSystem::chmod(const std::string& path, unsigned mode) {
    return recordedChange(messageOf("LibSystem", "chmod"), path, {wordsOfMode(mode)},
                          [&] { return real_.chmod(path, mode); });
}

int RecordedLibSystem::mkdir(const std::string& path, unsigned mode) {
    return recordedChange(messageOf("LibSystem", "mkdir"), path, {wordsOfMode(mode)},
                          [&] { return real_.mkdir(path, mode); });
}

std::string RecordedLibSystem::machine() {
    return recorded(messageOf("LibSystem", "machine"), {}, [&] { return real_.machine(); });
}

std::string RecordedLibSystem::homeDirectory() {
    return recorded(messageOf("LibSystem", "homeDirectory"), {},
                    [&] { return real_.homeDirectory(); });
}

void RecordedLibSystem::dispatchAfterOnMainQueue(std::int64_t nanoseconds,
                                                 const std::function<void()>& block) {
    constexpr auto kMessage = messageOf("LibSystem", "dispatchAfterOnMainQueue");
    recorded(kMessage, {words(nanoseconds)}, [&] {
        real_.dispatchAfterOnMainQueue(nanoseconds, recordedCallback(kMessage, block));
    });
}

}  // namespace velmoranth::record
