#include "quiet_phone.h"

#include "by_hand.h"
#import "device/library/load_library.h"
#import "device/standins/standin.h"
#import "device/standins/system.h"
#include "implementation.h"
#include <objc/runtime.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <stdexcept>
#include <string>

// A view or a cache of a class that the library leaves alone.
@interface PlainObject : NSObject {
}
@end

@implementation PlainObject
@end

// The platform's image and, in a variable of its own, what an icon is called.
@interface PlainIcon : NSObject {
  @public
    NSString* nodeIdentifier;
}
@end

@implementation PlainIcon

- (NSString*)nodeIdentifier {
    return nodeIdentifier;
}

@end

namespace velmoranth::benchmarks {
namespace {

const std::string kPreferencesPath = "/User/Library/Preferences/com.qor.velmoranthprefs.plist";

unsigned long calls = 0;
id platformImage = nil;
CGFloat platformAlpha = 0.75;

CGFloat quietAlpha(id /*self*/, SEL /*selector*/) {
    ++calls;
    return platformAlpha;
}

id quietImageForIcon(id /*self*/, SEL /*selector*/, id /*icon*/) {
    ++calls;
    return platformImage;
}

template <class Function>
void give(Class cls, const char* selector, Function function, const char* types) {
    class_replaceMethod(cls, sel_registerName(selector), implementationOf(function), types);
}

Class withQuietMethods(Class cls) {
    give(cls, "alpha", &quietAlpha, "d16@0:8");
    give(cls, "imageForIcon:", &quietImageForIcon, "@24@0:8@16");
    return cls;
}

Class newClass(const char* name) {
    const Class cls = objc_allocateClassPair([PlainObject class], name, 0);
    objc_registerClassPair(cls);
    return withQuietMethods(cls);
}

// The phone's files, in a folder that goes with the process.
class Files {
  public:
    Files() {
        std::string name = (std::filesystem::temp_directory_path() / "phone-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) {
            throw std::runtime_error("no temporary folder can be made");
        }
        folder_ = name;
        standins::setPhoneRoot(folder_);
    }

    Files(const Files&) = delete;
    Files& operator=(const Files&) = delete;

    ~Files() {
        standins::setPhoneRoot("");
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }

    static void writePreferences(NSDictionary* preferences) {
        const std::filesystem::path place = standins::placeOf(kPreferencesPath);
        std::filesystem::create_directories(place.parent_path());
        if (![preferences writeToFile:[NSString stringWithUTF8String:place.c_str()]
                           atomically:NO]) {
            throw std::runtime_error("cannot write the preferences");
        }
    }

  private:
    std::string folder_;
};

struct Phone {
    std::map<Hooked, id> labels;
    std::map<Hooked, id> caches;
};

Phone& phone() {
    static Phone instance;
    return instance;
}

void addObjects(Hooked hooked, Class label, Class cache) {
    phone().labels[hooked] = [[label alloc] init];
    phone().caches[hooked] = [[cache alloc] init];
}

void start() {
    static const Files files;
    standins::setSystemVersion(13, 3, 0, 1674.102);
    Files::writePreferences([NSDictionary dictionaryWithObject:[NSNumber numberWithBool:YES]
                                                        forKey:@"enable"]);
    platformImage = [[objc_getClass("UIImage") alloc] init];
    const Class label = withQuietMethods(objc_getClass("SBIconLegibilityLabelView"));
    const Class cache = withQuietMethods(objc_getClass("SBHIconImageCache"));
    addObjects(Hooked::not_, newClass("PlainLabelView"), newClass("PlainImageCache"));
    const Class labelByHand = newClass("LabelViewByHand");
    const Class cacheByHand = newClass("ImageCacheByHand");
    hookByHand(labelByHand, cacheByHand);
    addObjects(Hooked::byHand, labelByHand, cacheByHand);
    standins::loadLibrary();
    addObjects(Hooked::byLibrary, label, cache);
}

}  // namespace

void startQuietPhone() {
    static const bool isStarted = [] {
        @autoreleasepool {
            start();
        }
        return true;
    }();
    static_cast<void>(isStarted);
}

id labelView(Hooked hooked) {
    return phone().labels.at(hooked);
}

id imageCache(Hooked hooked) {
    return phone().caches.at(hooked);
}

id iconNamed(const char* nodeIdentifier) {
    PlainIcon* const icon = [[PlainIcon alloc] init];
    icon->nodeIdentifier = [[NSString alloc] initWithUTF8String:nodeIdentifier];
    return [icon autorelease];
}

unsigned long platformCalls() {
    return calls;
}

}  // namespace velmoranth::benchmarks
