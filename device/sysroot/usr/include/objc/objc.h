// Objective-C's basic types on 64-bit ARM.
#pragma once

#include <stddef.h>
#include <stdint.h>
#include <sys/cdefs.h>

typedef struct objc_class* Class;

struct objc_object {
    Class isa;
};

typedef struct objc_object* id;
typedef struct objc_selector* SEL;
typedef void (*IMP)(void);  // to be cast to the method's type before it is called

typedef bool BOOL;

#define YES __objc_yes
#define NO __objc_no

#define nil nullptr
#define Nil nullptr

__BEGIN_DECLS
SEL sel_registerName(const char*);
const char* object_getClassName(id);
__END_DECLS
