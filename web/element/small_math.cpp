#include <cmath>

// Replaces two functions of the C library by smaller ones. The C library's versions contain tables of numbers that gzip
// can hardly compress.

extern "C" {

int reduceAngle(double angle, double* rest) __asm__("__rem_pio2");

/// Reduces the argument of sin and cos. Returns n and writes the remainder, so that angle = n * pi / 2 + rest[0] +
/// rest[1]. Unlike the C library's version, this function supports only angles below one million; the effect uses no
/// larger angles.
int reduceAngle(double angle, double* rest) {
    // Three numbers whose sum is pi / 2. The first two have 33 bits, so that their products with `turns` are exact.
    constexpr double halfPi[] = {1.57079632673412561417e+00, 6.07710050630396597660e-11,
                                 2.02226624879595063154e-21};
    const double turns = std::nearbyint(angle * 6.36619772367581382433e-01);
    const double coarse = angle - turns * halfPi[0];
    const double fine = coarse - turns * halfPi[1];
    const double error = turns * halfPi[2] - ((coarse - fine) - turns * halfPi[1]);
    rest[0] = fine - error;
    rest[1] = (fine - rest[0]) - error;
    return static_cast<int>(turns);
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
