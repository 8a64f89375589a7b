// Maps the phone's library into this process, an arm64 Linux one, and starts it as the phone's
// loader does: imports, classes, +load methods, constructors.
#include "device/emulator/chains.h"
#include "device/emulator/faults.h"
#include "device/emulator/fixups.h"
#include "device/emulator/image.h"
#include "device/emulator/imports.h"
#include "device/emulator/load_error.h"
#include "device/emulator/macho_file.h"
#include "device/emulator/objc_image.h"
#include "device/emulator/pac.h"
#include "device/emulator/unwind.h"
#include "device/emulator/without_keys.h"
#include "device/library/load_library.h"
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>

namespace velmoranth::emulator {
namespace {

struct Library {
    explicit Library(MachOFile opened) : file(std::move(opened)), image(file) {}

    MachOFile file;
    Image image;
};

// This process's own runtime reads the library's type infos, and knows nothing of signatures.
bool isTypeTable(const std::string& name) {
    return name.starts_with("__ZTVN10__cxxabiv1") || name == "_objc_ehtype_vtable";
}

void fixChained(const Library& library) {
    for (const ChainedPointer& pointer : chainedPointersOf(library.file)) {
        auto& place = library.image.at<std::uint64_t>(pointer.address);
        place = pointer.isImport ? importOf(pointer.import.name,
                                            library.file.libraryOf(pointer.import.ordinal)) +
                                       static_cast<std::uint64_t>(pointer.import.addend)
                                 : library.image.base() + pointer.target;
        if (pointer.signing && pac::hasKeys()) {
            place = pac::sign(
                place, static_cast<pac::Key>(pointer.signing->key),
                pac::modifierOf(pointer.signing->address, pointer.signing->number, &place));
        }
        const bool isInTypeInfo = pointer.isImport && pointer.import.addend != 0;
        if (isInTypeInfo && isTypeTable(pointer.import.name)) {
            place = pac::authentic(pac::Kind::typeInfo, place, &place, pointer.import.name);
        }
    }
}

void fix(const Library& library) {
    if (library.file.isArm64e()) {
        return fixChained(library);
    }
    for (const std::uint64_t address : rebasesOf(library.file)) {
        library.image.at<std::uint64_t>(address) += library.image.base();
    }
    for (const Binding& binding : bindingsOf(library.file)) {
        library.image.at<std::uint64_t>(binding.address) =
            importOf(binding.name, library.file.libraryOf(binding.ordinal)) +
            static_cast<std::uint64_t>(binding.addend);
    }
}

void refuseWhatIsMissing(const Image& image) {
    for (const char* const section : {"__thread_vars", "__init_offsets"}) {
        if (image.section(section) != nullptr) {
            throw LoadError(std::string("a section that this loader does not know: ") + section);
        }
    }
}

// A test may leave them out: VELMORANTH_CONSTRUCTORS is "none" then.
void runConstructors(const Image& image, const char* path) {
    const char* const wanted = std::getenv("VELMORANTH_CONSTRUCTORS");
    if (wanted != nullptr && std::string_view(wanted) == "none") {
        return;
    }
    using Constructor = void (*)(int, const char**, char**, const char**);
    const char* arguments[] = {path, nullptr};
    image.eachPointer("__mod_init_func", [&](const std::uint64_t& constructor) {
        const std::uint64_t plain =
            pac::authentic(pac::Kind::initialiser, constructor, &constructor, "of __mod_init_func");
        reinterpret_cast<Constructor>(plain)(1, arguments, environ, arguments + 1);
    });
}

const char* libraryPath() {
    const char* const given = std::getenv("VELMORANTH_LIBRARY");
    return given == nullptr ? DEVICE_LIBRARY : given;
}

// A library that is loaded stays.
Library* library = nullptr;

void load(const char* path) {
    library = new Library(MachOFile::read(path));
    pac::begin(library->image, library->file.isArm64e());
    if (pac::hasKeys()) {
        tellOfFaults(library->image, path);
    } else if (pac::isArm64e()) {
        switchKeysOff(library->image);
    }
    refuseWhatIsMissing(library->image);
    fix(*library);
    registerObjectiveC(library->image);
    registerFrames(library->image);
    __builtin___clear_cache(reinterpret_cast<char*>(library->image.base()),
                            reinterpret_cast<char*>(library->image.end()));
    runLoadMethods(library->image);
    runConstructors(library->image, path);
}

}  // namespace
}  // namespace velmoranth::emulator

namespace velmoranth::standins {

void loadLibrary() {
    const char* const path = emulator::libraryPath();
    try {
        emulator::load(path);
    } catch (const emulator::LoadError& error) {
        emulator::stop(emulator::LoadError(std::string(path) + ": " + error.what()));
    }
}

void* exportedSymbol(const char* name) {
    if (emulator::library == nullptr) {
        return nullptr;
    }
    const std::uint64_t address =
        emulator::exportOf(emulator::library->file, "_" + std::string(name));
    return address == 0 ? nullptr
                        : reinterpret_cast<void*>(emulator::library->image.base() + address);
}

}  // namespace velmoranth::standins
