// The runtime's dispatch functions, to be cast to a method's type before they are called.
#pragma once

#include <objc/objc.h>

struct objc_super {
    id receiver;
    Class super_class;
};

__BEGIN_DECLS
void objc_msgSend(void);
void objc_msgSendSuper(void);
void objc_msgSendSuper2(void);
__END_DECLS
