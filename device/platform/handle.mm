#include "device/platform/handle.h"

#include "device/platform/counterparts.h"
#include "device/platform/handles.h"
#include <objc/runtime.h>

#include <map>
#include <mutex>

namespace velmoranth::device {
namespace {

class ClassHandle final : public Handle<platform::Class> {
  public:
    explicit ClassHandle(::Class cls)
        : Handle(static_cast<id>(cls), Hold::borrow),
          name_(class_getName(cls)),
          isMetaclass_(class_isMetaClass(cls) != 0) {}

    [[nodiscard]] const std::string& name() const override { return name_; }

    [[nodiscard]] bool isMetaclass() const override { return isMetaclass_; }

    // A class prints as its name.
    [[nodiscard]] std::string className() const override { return name_; }

    [[nodiscard]] std::string description() const override { return name_; }

  private:
    std::string name_;
    bool isMetaclass_;
};

// Kept for the life of the process, locks and all: other threads may still be at work when it ends.
template <class Key, class Value>
struct LockedMap {
    std::mutex mutex;
    std::map<Key, Value> values;

    static LockedMap& instance() {
        static auto* const map = new LockedMap;
        return *map;
    }
};

using Classes = LockedMap<Class, platform::ClassRef>;
using Counterparts = LockedMap<const platform::Object*, id>;

template <class Interface>
platform::ObjectRef wrapAs(id object) {
    return wrap<Interface>(object);
}

struct KnownClass {
    const char* name;
    platform::ObjectRef (*wrap)(id object);
};

// A class stands before those that it derives from.
constexpr KnownClass kKnownClasses[] = {
    {"UIImageView", &wrapAs<platform::ImageView>},
    {"UILabel", &wrapAs<platform::Label>},
    {"UIWindow", &wrapAs<platform::Window>},
    {"SBIconListView", &wrapAs<platform::SBIconListView>},
    {"UIView", &wrapAs<platform::View>},
    {"UIImage", &wrapAs<platform::Image>},
    {"NSBundle", &wrapAs<platform::Bundle>},
    {"CUINamedImage", &wrapAs<platform::CUINamedImage>},
    {"CUINamedVectorGlyph", &wrapAs<platform::CUINamedVectorGlyph>},
    {"CUICatalog", &wrapAs<platform::CUICatalog>},
    {"SBIcon", &wrapAs<platform::SBIcon>},
};

}  // namespace

id nativeOf(const platform::Object& object) {
    void* const native = object.native();
    return native == nullptr ? counterpartOf(object) : static_cast<id>(native);
}

platform::ObjectRef wrapAny(id object) {
    if (object == nil) {
        return nullptr;
    }
    for (const KnownClass& known : kKnownClasses) {
        // Looked up each time: a framework may be loaded later.
        const Class cls = static_cast<Class>(objc_getClass(known.name));
        if (cls != Nil && [object isKindOfClass:cls]) {
            return known.wrap(object);
        }
    }
    return std::make_shared<Handle<platform::Object>>(object, Hold::retain);
}

platform::ClassRef wrapClass(Class cls) {
    if (cls == Nil) {
        return nullptr;
    }
    Classes& classes = Classes::instance();
    const std::scoped_lock lock(classes.mutex);
    platform::ClassRef& handle = classes.values[cls];
    if (handle == nullptr) {
        handle = std::make_shared<ClassHandle>(cls);
    }
    return handle;
}

void addCounterpart(const platform::Object& object, id counterpart) {
    Counterparts& counterparts = Counterparts::instance();
    const std::scoped_lock lock(counterparts.mutex);
    counterparts.values[&object] = counterpart;
}

void removeCounterpart(const platform::Object& object) {
    Counterparts& counterparts = Counterparts::instance();
    const std::scoped_lock lock(counterparts.mutex);
    counterparts.values.erase(&object);
}

id counterpartOf(const platform::Object& object) {
    Counterparts& counterparts = Counterparts::instance();
    const std::scoped_lock lock(counterparts.mutex);
    const auto entry = counterparts.values.find(&object);
    return entry == counterparts.values.end() ? nil : entry->second;
}

}  // namespace velmoranth::device
