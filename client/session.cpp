#include "client/session.h"

#include <algorithm>

double Session::patience() const {
    constexpr double kShortest = 10;
    return std::max(kShortest, options.waitSeconds);
}
