#include "client/library/filters.h"

#include <cmath>
#include <complex>

// The second-order sections of Bristow-Johnson's cookbook, before the bilinear transform: s is the
// frequency relative to the filter's own, and the filter's gain is the square of `root`.
double responseAt(const Filter& filter, double hertz) {
    constexpr double kDecibelsPerRoot = 40;
    const double root = std::pow(10, filter.decibels / kDecibelsPerRoot);
    const std::complex<double> s(0, hertz / filter.hertz);
    const std::complex<double> square = s * s;
    std::complex<double> above;
    std::complex<double> below;
    if (filter.kind == Filter::kPeak) {
        above = square + s * root / filter.quality + 1.0;
        below = square + s / (root * filter.quality) + 1.0;
    } else {
        const std::complex<double> slope = s * std::sqrt(root) / filter.quality;
        const std::complex<double> low = square + slope + root;
        const std::complex<double> high = root * square + slope + 1.0;
        above = root * (filter.kind == Filter::kLowShelf ? low : high);
        below = filter.kind == Filter::kLowShelf ? high : low;
    }
    return 20 * std::log10(std::abs(above / below));
}
