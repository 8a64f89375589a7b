// Every kind of pointer that is signed on processors with pointer authentication, for the slice of
// the sample library.
#include "device/platform/signed_pointers.h"

extern "C" {
// In no library of the phone's.
void sampleKeep(void (^block)(void));
int sampleGiven(int number);
extern int sampleObject __attribute__((weak_import));
int sampleAbsent(int number) __attribute__((weak_import));
}

namespace sample {

class Base {
  public:
    virtual ~Base() {}

    virtual int value() const = 0;

    virtual int twice() const { return 2 * value(); }
};

class Other {
  public:
    virtual ~Other() {}

    virtual int other(const Base& base) { return base.twice(); }
};

class Both : public Base, public Other {
  public:
    explicit Both(int number) : number_(number) {}

    int value() const override { return number_; }

    int other(const Base& base) override { return base.value() + number_; }

  private:
    int number_;
};

// An object in data, which the loader gives its pointer to virtual functions.
class Quiet : public Base {
  public:
    int value() const override { return 1; }
};

constinit const Quiet kQuiet{};

class Boom {
  public:
    explicit Boom(int number) : number_(number) {}

    Boom(const Boom& other) : number_(other.number_ + 1) {}

    virtual ~Boom() { number_ = 0; }

    int number() const { return number_; }

  private:
    int number_;
};

namespace {

int plusOne(int number) {
    return number + 1;
}

int minusOne(int number) {
    return number - 1;
}

using Function = int (*)(int);

#ifdef ABSENT
constexpr Function kLast = &sampleAbsent;
#else
constexpr Function kLast = &sampleGiven;
#endif

// More than two pages of functions.
struct Functions {
    constexpr Functions() {
        for (Function& function : all) {
            function = &function - all < 600 ? &plusOne : &minusOne;
        }
        all[kCount - 1] = kLast;
    }

    static constexpr int kCount = 1200;
    Function all[kCount] = {};
};

constexpr Functions kFunctions;

volatile unsigned chosen = 0;
const void* volatile text = nullptr;

}  // namespace

__attribute__((noinline)) int call(const Base& base, Other& other) {
    const int number = kFunctions.all[chosen](base.value());
    if (number > 100) {
        throw Boom(number);
    }
    return number + other.other(base) + (&sampleObject != nullptr ? sampleObject : 0);
}

__attribute__((noinline)) int caught(const Base& base, Other& other) {
    try {
        return call(base, other);
    } catch (const Boom& boom) {
        return boom.number();
    }
}

// A function is what is asked for, and a text of the system's.
__attribute__((noinline)) int called(int (*function)(const Base&, Other&)) {
    text = __builtin___CFStringMakeConstantString("sample");
    Both both(1);
    return function(kQuiet, both);
}

}  // namespace sample

__attribute__((objc_root_class))
@interface Sample
- (void)play:(const char*)name;
@end

@interface Sample (Signed)
+ (int)add:(int)number;
- (int)take:(int)number;
@end

@implementation Sample (Signed)

+ (int)add:(int)number {
    sample::Both both(number);
    return sample::caught(both, both) + sample::caught(sample::kQuiet, both) +
           sample::called(&sample::call);
}

- (int)take:(int)number {
    const sample::Boom boom(number);
    sampleKeep(velmoranth::device::signedBlock(^{
      sample::chosen = static_cast<unsigned>(boom.number());
    }));
    sampleKeep(velmoranth::device::signedBlock(^{
      sample::chosen = 0;
    }));
    @try {
        [self play:""];
    } @catch (Sample* other) {
        return number + 1;
    }
    return number;
}

@end
