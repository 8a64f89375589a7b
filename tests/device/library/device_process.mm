#include "device/library/device_process.h"

#include "device/library/load_library.h"
#include <objc/runtime.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace velmoranth::standins {
namespace {

const std::string kPreferencesPath = "/User/Library/Preferences/com.qor.velmoranthprefs.plist";

void appendNumber(std::string& bytes, std::uint32_t number) {
    for (const unsigned shift : {24U, 16U, 8U, 0U}) {
        bytes += static_cast<char>(number >> shift);
    }
}

// The stand-ins look at the header alone.
std::string pngOf(unsigned width, unsigned height) {
    using namespace std::string_literals;
    std::string bytes = "\x89PNG\r\n\x1a\n\0\0\0\rIHDR"s;
    appendNumber(bytes, width);
    appendNumber(bytes, height);
    return bytes + "\x08\x06\0\0\0"s + "\0\0\0\0"s + "\0\0\0\0IEND\xae\x42\x60\x82"s;
}

}  // namespace

DeviceProcess::DeviceProcess() : pool_([[NSAutoreleasePool alloc] init]) {
    std::string name = (std::filesystem::temp_directory_path() / "phone-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) {
        throw std::runtime_error("no temporary folder can be made");
    }
    folder_ = name;
    setPhoneRoot(folder_);
    folder("/var/mobile/Library/Preferences");
    runSystem(kiOS13);
}

DeviceProcess::~DeviceProcess() {
    [pool_ release];
    setPhoneRoot("");
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
}

void DeviceProcess::runSystem(const SystemVersion& version) {
    setSystemVersion(version.major, version.minor, 0, version.coreFoundation);
}

void DeviceProcess::load() {
    clearJournal();
    clearLog();
    loadLibrary();
}

void DeviceProcess::loaded() {
    load();
    clearJournal();
    clearLog();
}

void DeviceProcess::file(const std::string& path, const std::string& contents) {
    const std::filesystem::path place = placeOf(path);
    std::filesystem::create_directories(place.parent_path());
    std::ofstream stream(place, std::ios::binary);
    stream << contents;
    if (!stream.flush()) {
        throw std::runtime_error("cannot write " + path);
    }
}

void DeviceProcess::folder(const std::string& path) {
    std::filesystem::create_directories(placeOf(path));
}

void DeviceProcess::remove(const std::string& path) {
    std::filesystem::remove_all(placeOf(path));
}

bool DeviceProcess::exists(const std::string& path) {
    return std::filesystem::exists(placeOf(path));
}

std::string DeviceProcess::contents(const std::string& path) {
    std::ifstream stream(placeOf(path), std::ios::binary);
    return stream ? std::string(std::istreambuf_iterator<char>(stream), {}) : "<none>";
}

void DeviceProcess::png(const std::string& path, unsigned width, unsigned height) {
    file(path, pngOf(width, height));
}

void DeviceProcess::preferences(NSDictionary* preferences) {
    NSString* problem = nil;
    NSData* const data =
        [NSPropertyListSerialization dataFromPropertyList:preferences
                                                   format:NSPropertyListXMLFormat_v1_0
                                         errorDescription:&problem];
    if (data == nil) {
        throw std::runtime_error(textOf(problem));
    }
    file(kPreferencesPath, std::string(static_cast<const char*>([data bytes]), [data length]));
}

void DeviceProcess::activeThemes(std::initializer_list<const char*> names,
                                 std::initializer_list<const char*> switches) {
    NSMutableArray* const themes = [NSMutableArray array];
    for (const char* const name : names) {
        [themes addObject:[NSString stringWithUTF8String:name]];
    }
    NSMutableDictionary* const entries = [NSMutableDictionary dictionary];
    [entries setObject:themes forKey:@"ActiveThemes"];
    for (const char* const key : switches) {
        [entries setObject:[NSNumber numberWithBool:YES]
                    forKey:[NSString stringWithUTF8String:key]];
    }
    preferences(entries);
}

Class<VelMoranthMessages> DeviceProcess::velMoranth() {
    return static_cast<Class<VelMoranthMessages>>(objc_getClass("VelMoranth"));
}

Class<VelmoranthFileManagerMessages> DeviceProcess::fileManager() {
    return static_cast<Class<VelmoranthFileManagerMessages>>(
        objc_getClass("VelmoranthFileManager"));
}

std::string textOf(NSString* text) {
    return text == nil ? "(nil)" : [text UTF8String];
}

}  // namespace velmoranth::standins
