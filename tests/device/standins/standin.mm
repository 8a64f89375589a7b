#import "device/standins/standin.h"

#include <map>
#include <mutex>

namespace velmoranth::standins {
namespace {

struct Living {
    std::mutex mutex;
    std::map<std::string, long> counts;
};

// Never destroyed: objects may end after main.
Living& livingObjects() {
    static auto* const instance = new Living;
    return *instance;
}

void count(Class cls, long change) {
    const std::scoped_lock lock(livingObjects().mutex);
    livingObjects().counts[class_getName(cls)] += change;
}

}  // namespace

long living(const std::string& className) {
    const std::scoped_lock lock(livingObjects().mutex);
    const auto entry = livingObjects().counts.find(className);
    return entry == livingObjects().counts.end() ? 0 : entry->second;
}

std::vector<std::string> allLiving() {
    const std::scoped_lock lock(livingObjects().mutex);
    std::vector<std::string> lines;
    for (const auto& [name, number] : livingObjects().counts) {
        if (number != 0) {
            lines.push_back(name + " " + std::to_string(number));
        }
    }
    return lines;
}

}  // namespace velmoranth::standins

@implementation StandIn

+ (id)allocWithZone:(NSZone*)zone {
    const id object = [super allocWithZone:zone];
    velmoranth::standins::count(self, 1);
    return object;
}

- (void)dealloc {
    velmoranth::standins::count([self class], -1);
    [super dealloc];
}

@end
