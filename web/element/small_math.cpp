#include <cmath>

// Replaces two functions of the C library whose tables of 2 to 3 KB do not compress.

extern "C" {

int reduceLargeAngle(double* x, double* y, int exponent, int count,
                     int precision) __asm__("__rem_pio2_large");

/// Reduces the argument of sin and cos if it is larger than a million. The effect has only small angles, and the C
/// library reduces those without this function.
int reduceLargeAngle(double* /*x*/, double* /*y*/, int /*exponent*/, int /*count*/,
                     int /*precision*/) {
    __builtin_trap();
}

/// Returns e to the power of x with an error below one unit in the last place: x = power * ln 2 + r, and exp(r) is a
/// rational function of r.
double exp(double x) {
    constexpr double ln2High = 6.93147180369123816490e-01;  // ln 2 without its lowest bits
    constexpr double ln2Low = 1.90821492927058770002e-10;   // the lowest bits of ln 2
    constexpr double inverseLn2 = 1.44269504088896338700e+00;
    constexpr double coefficients[] = {1.66666666666666019037e-01, -2.77777777770155933842e-03,
                                       6.61375632143793436117e-05, -1.65339022054652515390e-06,
                                       4.13813679705723846039e-08};
    const double inRange = x > -745.0 ? (x < 709.0 ? x : 709.0) : (x <= -745.0 ? -745.0 : x);
    if (inRange != inRange) {
        return x;
    }
    const int power = static_cast<int>(std::floor(inRange * inverseLn2 + 0.5));
    const double high = inRange - power * ln2High;
    const double low = power * ln2Low;
    const double r = high - low;
    const double square = r * r;
    double sum = 0.0;
    for (int at = 4; at >= 0; --at) {
        sum = coefficients[at] + square * sum;
    }
    const double c = r - square * sum;
    return std::scalbn(1.0 + (r * c / (2.0 - c) - low + high), power);
}
}
