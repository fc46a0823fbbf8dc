// What a parametric filter does at a frequency.

#ifndef ZYL_CLIENT_LIBRARY_FILTERS_H
#define ZYL_CLIENT_LIBRARY_FILTERS_H

struct Filter {
    enum Kind { kPeak, kLowShelf, kHighShelf };

    Kind kind;
    double hertz;  // the centre of a peak, the middle of a shelf's slope
    double decibels;
    double quality;
};

// In decibels, of the filter as an analogue circuit: there is no sampling rate to ask for.
double responseAt(const Filter& filter, double hertz);

#endif  // ZYL_CLIENT_LIBRARY_FILTERS_H
