// The Objective-C runtime's functions.
#pragma once

#include <objc/objc.h>

typedef struct objc_method* Method;
typedef struct objc_ivar* Ivar;
typedef struct objc_category* Category;
typedef struct objc_property* objc_property_t;

typedef uintptr_t objc_AssociationPolicy;

enum {
    OBJC_ASSOCIATION_ASSIGN = 0,
    OBJC_ASSOCIATION_RETAIN_NONATOMIC = 1,
    OBJC_ASSOCIATION_COPY_NONATOMIC = 3,
    OBJC_ASSOCIATION_RETAIN = 01401,
    OBJC_ASSOCIATION_COPY = 01403
};

__BEGIN_DECLS
Class objc_getClass(const char*);
Class objc_lookUpClass(const char*);
Class objc_getMetaClass(const char*);
Class objc_allocateClassPair(Class, const char*, size_t);
void objc_registerClassPair(Class);

Class object_getClass(id);
Class object_setClass(id, Class);
BOOL object_isClass(id);
id object_getIvar(id, Ivar);
void object_setIvar(id, Ivar, id);

const char* class_getName(Class);
Class class_getSuperclass(Class);
BOOL class_isMetaClass(Class);
size_t class_getInstanceSize(Class);
Ivar class_getInstanceVariable(Class, const char*);
Method class_getInstanceMethod(Class, SEL);
Method class_getClassMethod(Class, SEL);
IMP class_getMethodImplementation(Class, SEL);
BOOL class_respondsToSelector(Class, SEL);
BOOL class_addMethod(Class, SEL, IMP, const char*);
IMP class_replaceMethod(Class, SEL, IMP, const char*);
BOOL class_addIvar(Class, const char*, size_t, uint8_t, const char*);

const char* ivar_getName(Ivar);
const char* ivar_getTypeEncoding(Ivar);
ptrdiff_t ivar_getOffset(Ivar);

SEL method_getName(Method);
IMP method_getImplementation(Method);
const char* method_getTypeEncoding(Method);
IMP method_setImplementation(Method, IMP);
void method_exchangeImplementations(Method, Method);

void objc_setAssociatedObject(id, const void*, id, objc_AssociationPolicy);
id objc_getAssociatedObject(id, const void*);
void objc_removeAssociatedObjects(id);
__END_DECLS
