// GNUstep asks for this header where blocks are on; GCC's runtime brings none.
#include <Block.h>
