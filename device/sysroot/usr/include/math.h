// The classification numbers of floating-point numbers, as Darwin has them. Functions are the
// compiler's own.
#pragma once

typedef float float_t;
typedef double double_t;
#define FP_NAN 1
#define FP_INFINITE 2
#define FP_ZERO 3
#define FP_NORMAL 4
#define FP_SUBNORMAL 5
