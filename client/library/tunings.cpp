#include "client/library/tunings.h"

#include <algorithm>

#include "client/library/parse.h"
#include "client/library/storage.h"

namespace {

constexpr char kDirectory[] = "/etc/zyl/";

}  // namespace

std::string tuningFile(int32_t route, int32_t number) {
    return format("%s%s_%d", kDirectory, kRouteNames[route], number);
}

std::vector<int32_t> tuningNumbers(int32_t route) {
    std::vector<int32_t> numbers;
    const std::string start = std::string(kRouteNames[route]) + "_";
    for (const std::string& name : namesIn(kDirectory)) {
        int32_t number = 0;
        if (name.compare(0, start.size(), start) != 0) continue;
        if (parseNumber(name.substr(start.size()), &number)) numbers.push_back(number);
    }
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

bool isTuning(const Property& property) {
    return property.key.compare(0, 7, "tuning.") == 0;
}

std::string describeTunings(int32_t route) {
    std::string list;
    for (int32_t number : tuningNumbers(route)) {
        list += (list.empty() ? "" : ", ") + std::to_string(number);
    }
    return list.empty() ? "" : std::string(kRouteNames[route]) + " has the tunings " + list;
}
