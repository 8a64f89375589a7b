#include "device/platform/handle.h"

#include "device/platform/counterparts.h"
#include "device/platform/handles.h"
#include <objc/runtime.h>

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <map>
#include <mutex>
#include <utility>

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
        static auto& map = *new LockedMap;
        return map;
    }
};

using Classes = LockedMap<Class, platform::ClassRef>;
using KnownHandle = std::pair<const Class, platform::ClassRef>;

// The classes asked for last, each in a place that its address decides: those that methods are
// called with come again and again, and are found without a lock.
std::atomic<const KnownHandle*>& lastKnown(Class cls) {
    static constinit std::array<std::atomic<const KnownHandle*>, 64> places{};
    constexpr unsigned kAlignmentBits = 4;
    return places[(reinterpret_cast<std::uintptr_t>(cls) >> kAlignmentBits) % places.size()];
}

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
        const Class cls = classNamed(known.name);
        if (cls != Nil && [object isKindOfClass:cls]) {
            return known.wrap(object);
        }
    }
    return std::make_shared<Handle<platform::Object>>(object, Hold::retain);
}

Class classNamed(const char* name) {
    return static_cast<Class>(objc_getClass(name));
}

const platform::ClassRef& wrapClass(Class cls) {
    if (cls == Nil) {
        static const platform::ClassRef kNil;
        return kNil;
    }
    std::atomic<const KnownHandle*>& last = lastKnown(cls);
    const KnownHandle* known = last.load(std::memory_order_acquire);
    if (known == nullptr || known->first != cls) {
        Classes& classes = Classes::instance();
        const std::scoped_lock lock(classes.mutex);
        KnownHandle& entry = *classes.values.try_emplace(cls).first;
        if (entry.second == nullptr) {
            entry.second = std::make_shared<ClassHandle>(cls);
        }
        known = &entry;
        last.store(known, std::memory_order_release);
    }
    return known->second;
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
