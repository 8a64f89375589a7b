// A format letter for the integers of a pointer's width, on a machine whose long has 64 bits.
#pragma once

#include <stdint.h>

#define PRIxPTR "lx"
