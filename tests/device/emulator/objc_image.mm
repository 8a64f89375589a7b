#include "device/emulator/objc_image.h"

#include "device/emulator/calls.h"
#include "device/emulator/pac.h"
#import <Foundation/Foundation.h>
#include <objc/runtime.h>

#include <array>
#include <cstring>
#include <map>
#include <string>
#include <vector>

// A protocol that the runtime does not know yet.
extern "C" void __objc_protocols_add_protocol(const char* name, void* protocol);

namespace velmoranth::emulator {
namespace {

// The phone's data, as the compiler writes them. Pointers are kept as numbers: Image::behind checks
// them.
struct MethodList {
    std::uint32_t entrySize;
    std::uint32_t count;
};

struct MethodData {
    const char* name;
    const char* encoding;
    IMP implementation;
};

struct IvarData {
    std::uint64_t offset;  // of a 32-bit number
    const char* name;
    const char* encoding;
    std::uint32_t alignment;  // as a power of two
    std::uint32_t size;
};

struct ClassReadOnlyData {
    std::uint32_t flags;
    std::uint32_t instanceStart;
    std::uint32_t instanceSize;
    std::uint32_t reserved;
    std::uint64_t ivarLayout;
    const char* name;
    std::uint64_t methods;
    std::uint64_t protocols;
    std::uint64_t ivars;
};

struct ClassData {
    std::uint64_t metaclass;
    std::uint64_t superclass;
    std::uint64_t cache;
    std::uint64_t vtable;
    std::uint64_t readOnlyData;
};

struct CategoryData {
    const char* name;
    std::uint64_t cls;
    std::uint64_t instanceMethods;
    std::uint64_t classMethods;
    std::uint64_t protocols;
};

struct ProtocolData {
    std::uint64_t isa;
    const char* name;
};

// A constant string: GNUstep's has no flags.
struct ConstantString {
    std::uint64_t isa;
    std::uint64_t flags;
    std::uint64_t characters;
    std::uint64_t length;
};

struct NativeConstantString {
    std::uint64_t isa;
    std::uint64_t characters;
    std::uint64_t length;
};

// GCC's form of a protocol.
struct NativeProtocol {
    Class isa;
    const char* name;
    void* protocols;
    void* instanceMethods;
    void* classMethods;
};

IMP authenticImplementation(const MethodData& method) {
    return reinterpret_cast<IMP>(
        pac::authentic(pac::Kind::method, reinterpret_cast<std::uint64_t>(method.implementation),
                       &method.implementation, method.name));
}

class Registrar {
  public:
    explicit Registrar(const Image& image) : image_(image) {}

    void run() {
        rewriteStrings();
        image_.eachPointer("__objc_selrefs", [](std::uint64_t& selector) {
            selector = reinterpret_cast<std::uint64_t>(
                sel_registerName(reinterpret_cast<const char*>(selector)));
        });
        image_.eachPointer("__objc_protorefs", [this](std::uint64_t& reference) {
            reference = reinterpret_cast<std::uint64_t>(protocolAt(reference));
        });
        image_.eachPointer("__objc_classlist", [this](std::uint64_t cls) { define(cls); });
        for (const char* const section : {"__objc_classrefs", "__objc_superrefs"}) {
            image_.eachPointer(section, [this](std::uint64_t& reference) {
                reference = reinterpret_cast<std::uint64_t>(classAt(reference));
            });
        }
        image_.eachPointer("__objc_catlist", [this](std::uint64_t category) {
            addCategory(image_.behind<CategoryData>(category));
        });
    }

    // The class that data of the library, or a bound import, stand for.
    Class classAt(std::uint64_t pointer) {
        if (!image_.contains(pointer)) {
            return reinterpret_cast<Class>(pointer);
        }
        if (const auto metaclass = metaclasses_.find(pointer); metaclass != metaclasses_.end()) {
            return object_getClass(static_cast<id>(define(metaclass->second)));
        }
        return define(pointer);
    }

    template <class Use>
    void eachMethod(std::uint64_t list, Use use) const {
        if (list == 0) {
            return;
        }
        const auto& methods = image_.behind<MethodList>(list);
        if (methods.entrySize != sizeof(MethodData)) {
            throw LoadError("relative method lists, which the runtime of iOS 12 does not know");
        }
        for (std::uint32_t i = 0; i < methods.count; ++i) {
            use(image_.behind<MethodData>(list + sizeof methods + i * sizeof(MethodData)));
        }
    }

    [[nodiscard]] const ClassReadOnlyData& dataOf(std::uint64_t cls) const {
        constexpr std::uint64_t kFlags = 7;
        return image_.behind<ClassReadOnlyData>(image_.behind<ClassData>(cls).readOnlyData &
                                                ~kFlags);
    }

    [[nodiscard]] const ClassReadOnlyData& metaclassDataOf(std::uint64_t cls) const {
        return dataOf(image_.behind<ClassData>(cls).metaclass);
    }

  private:
    void rewriteStrings() {
        const Section* const section = image_.section("__cfstring");
        if (section == nullptr) {
            return;
        }
        for (std::uint64_t offset = 0; offset < section->size; offset += sizeof(ConstantString)) {
            rewrite(image_.at<ConstantString>(section->address + offset));
        }
    }

    void rewrite(ConstantString& string) const {
        constexpr std::uint64_t kUtf16 = 0x10;
        NativeConstantString native = {string.isa, string.characters, string.length};
        if ((string.flags & kUtf16) != 0) {  // GNUstep's are UTF-8
            const auto& text = image_.behind<unichar>(string.characters);
            NSString* const characters = [[NSString alloc] initWithCharacters:&text
                                                                       length:string.length];
            auto* const bytes = new std::string([characters UTF8String]);  // for good
            [characters release];
            native.characters = reinterpret_cast<std::uint64_t>(bytes->data());
            native.length = bytes->size();
        }
        std::memcpy(&string, &native, sizeof native);
    }

    Class define(std::uint64_t pointer) {
        if (const auto known = classes_.find(pointer); known != classes_.end()) {
            return known->second;
        }
        const auto& data = image_.behind<ClassData>(pointer);
        const ClassReadOnlyData& readOnly = dataOf(pointer);
        const Class cls = objc_allocateClassPair(classAt(data.superclass), readOnly.name, 0);
        if (cls == Nil) {
            throw LoadError(std::string("the process has a class already: ") + readOnly.name);
        }
        classes_[pointer] = cls;
        metaclasses_[data.metaclass] = pointer;
        eachIvar(readOnly.ivars, [cls](const IvarData& ivar) {
            class_addIvar(cls, ivar.name, ivar.size, static_cast<std::uint8_t>(ivar.alignment),
                          ivar.encoding);
        });
        const Class metaclass = object_getClass(static_cast<id>(cls));
        addMethods(cls, readOnly.methods);
        addMethods(metaclass, metaclassDataOf(pointer).methods);
        addProtocols(cls, readOnly.protocols);
        objc_registerClassPair(cls);
        // The superclass here may be larger or smaller than the one that was compiled against.
        eachIvar(readOnly.ivars, [&](const IvarData& ivar) {
            image_.behind<std::int32_t>(ivar.offset) = static_cast<std::int32_t>(
                ivar_getOffset(class_getInstanceVariable(cls, ivar.name)));
        });
        return cls;
    }

    template <class Use>
    void eachIvar(std::uint64_t list, Use use) const {
        if (list == 0) {
            return;
        }
        const auto& ivars = image_.behind<MethodList>(list);
        for (std::uint32_t i = 0; i < ivars.count; ++i) {
            use(image_.behind<IvarData>(list + sizeof ivars + i * sizeof(IvarData)));
        }
    }

    void addMethods(Class cls, std::uint64_t list) const {
        eachMethod(list, [cls](const MethodData& method) {
            void* const implementation = methodOfLibrary(
                reinterpret_cast<void*>(authenticImplementation(method)), method.encoding);
            class_addMethod(cls, sel_registerName(method.name),
                            reinterpret_cast<IMP>(implementation), method.encoding);
        });
    }

    void addProtocols(Class cls, std::uint64_t list) {
        if (list == 0) {
            return;
        }
        const auto count = image_.behind<std::uint64_t>(list);
        for (std::uint64_t i = 1; i <= count; ++i) {
            class_addProtocol(cls, protocolAt(image_.behind<std::uint64_t>(list + i * 8)));
        }
    }

    // Protocols that only the library knows have their name and nothing else.
    Protocol* protocolAt(std::uint64_t pointer) const {
        const char* const name = image_.behind<ProtocolData>(pointer).name;
        Protocol* protocol = objc_getProtocol(name);
        if (protocol == nil) {
            auto* const made =
                new NativeProtocol{objc_getClass("Protocol"), name, nullptr, nullptr, nullptr};
            __objc_protocols_add_protocol(name, made);
            protocol = reinterpret_cast<Protocol*>(made);
        }
        return protocol;
    }

    void addCategory(const CategoryData& category) {
        const Class cls = classAt(category.cls);
        addMethods(cls, category.instanceMethods);
        if (category.classMethods != 0) {
            throw LoadError(std::string("a category with class methods: ") + category.name);
        }
        addProtocols(cls, category.protocols);
    }

    const Image& image_;
    std::map<std::uint64_t, Class> classes_;              // by where their data lie
    std::map<std::uint64_t, std::uint64_t> metaclasses_;  // and their metaclasses'
};

// Its tables are needed as long as the library is loaded.
Registrar& registrarOf(const Image& image) {
    static auto* const registrar = new Registrar(image);
    return *registrar;
}

}  // namespace

void registerObjectiveC(const Image& image) {
    registrarOf(image).run();
}

void runLoadMethods(const Image& image) {
    Registrar& registrar = registrarOf(image);
    const SEL load = sel_registerName("load");
    const auto runIn = [&](Class cls, std::uint64_t methods) {
        registrar.eachMethod(methods, [&](const MethodData& method) {
            if (std::strcmp(method.name, "load") == 0) {
                reinterpret_cast<void (*)(Class, SEL)>(
                    reinterpret_cast<void (*)()>(authenticImplementation(method)))(cls, load);
            }
        });
    };
    image.eachPointer("__objc_nlclslist", [&](std::uint64_t cls) {
        runIn(registrar.classAt(cls), registrar.metaclassDataOf(cls).methods);
    });
    image.eachPointer("__objc_nlcatlist", [&](std::uint64_t pointer) {
        const auto& category = image.behind<CategoryData>(pointer);
        runIn(registrar.classAt(category.cls), category.classMethods);
    });
}

}  // namespace velmoranth::emulator
