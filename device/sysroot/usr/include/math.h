// Floating-point functions, with Darwin's classification numbers.
#pragma once

#include <sys/cdefs.h>

typedef float float_t;
typedef double double_t;
#define HUGE_VAL __builtin_huge_val()
#define HUGE_VALF __builtin_huge_valf()
#define HUGE_VALL __builtin_huge_vall()
#define INFINITY __builtin_huge_valf()
#define NAN __builtin_nanf("0x7fc00000")
#define FP_NAN 1
#define FP_INFINITE 2
#define FP_ZERO 3
#define FP_NORMAL 4
#define FP_SUBNORMAL 5
#define M_PI 3.14159265358979323846

// One function for each of the three types.
#define VELMORANTH_MATH_1(name) \
    double name(double);        \
    float name##f(float);       \
    long double name##l(long double)
#define VELMORANTH_MATH_2(name)  \
    double name(double, double); \
    float name##f(float, float); \
    long double name##l(long double, long double)

__BEGIN_DECLS
VELMORANTH_MATH_1(acos);
VELMORANTH_MATH_1(asin);
VELMORANTH_MATH_1(atan);
VELMORANTH_MATH_1(cos);
VELMORANTH_MATH_1(sin);
VELMORANTH_MATH_1(tan);
VELMORANTH_MATH_1(exp);
VELMORANTH_MATH_1(exp2);
VELMORANTH_MATH_1(log);
VELMORANTH_MATH_1(log2);
VELMORANTH_MATH_1(log10);
VELMORANTH_MATH_1(sqrt);
VELMORANTH_MATH_1(cbrt);
VELMORANTH_MATH_1(ceil);
VELMORANTH_MATH_1(floor);
VELMORANTH_MATH_1(round);
VELMORANTH_MATH_1(trunc);
VELMORANTH_MATH_1(rint);
VELMORANTH_MATH_1(nearbyint);
VELMORANTH_MATH_1(fabs);
VELMORANTH_MATH_2(atan2);
VELMORANTH_MATH_2(pow);
VELMORANTH_MATH_2(fmod);
VELMORANTH_MATH_2(fmin);
VELMORANTH_MATH_2(fmax);
VELMORANTH_MATH_2(hypot);
VELMORANTH_MATH_2(copysign);
VELMORANTH_MATH_2(remainder);

double fma(double, double, double);
float fmaf(float, float, float);
double ldexp(double, int);
float ldexpf(float, int);
long double ldexpl(long double, int);
double frexp(double, int*);
double modf(double, double*);
long lround(double);
long lroundf(float);
long lroundl(long double);
long long llround(double);
long long llroundf(float);
long lrint(double);
__END_DECLS

#undef VELMORANTH_MATH_1
#undef VELMORANTH_MATH_2
