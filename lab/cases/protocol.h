// The service's protocol in a client's words: codes and results by their names, and what stands in
// a call and in its reply. It shares nothing with the service's own headers, so that a number that
// changes there shows.

#ifndef ZYL_LAB_CASES_PROTOCOL_H
#define ZYL_LAB_CASES_PROTOCOL_H

#include <cstdint>
#include <string>
#include <vector>

constexpr char kServiceName[] = "zyl_kwo_service";
constexpr char kDescriptor[] = "zyl.kwo.Izyl_kwo_service";

struct Shape {
    uint32_t code;
    std::string name;
    // A letter an argument: s a switch, m a mode, r a route, t a tuning, b a band, g a gain, i an
    // index, k a block, x any word, f a float, B a blob, D a descriptor and the length of its
    // region.
    std::string arguments;
    // What a reply holds: 'r' a result, 'w' any word, 'f' a float, 's' a string, 'n' a name behind
    // its length, 'p' code 1's reply, "" nothing; with '?' in front the call may fail
    // instead. "-" for a code that nobody answers.
    std::string reply;
};

const std::vector<Shape>& shapes();

// Null where there is none.
const Shape* shapeOf(uint32_t code);
const Shape* shapeNamed(const std::string& name);

// A result of an operation, or binder's status in place of a reply; a number where it has no
// name.
std::string resultName(int32_t result);
std::string statusName(int32_t status);

#endif  // ZYL_LAB_CASES_PROTOCOL_H
