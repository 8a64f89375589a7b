// The Objective-C runtime's functions.
#pragma once

#include <objc/objc.h>

typedef struct objc_method* Method;
typedef struct objc_ivar* Ivar;

__BEGIN_DECLS
Class objc_getClass(const char*);
Class object_getClass(id);
const char* class_getName(Class);
Class class_getSuperclass(Class);
BOOL class_isMetaClass(Class);
Ivar class_getInstanceVariable(Class, const char*);
Method class_getInstanceMethod(Class, SEL);
BOOL class_addMethod(Class, SEL, IMP, const char*);
const char* ivar_getTypeEncoding(Ivar);
ptrdiff_t ivar_getOffset(Ivar);
IMP method_getImplementation(Method);
__END_DECLS
