// The layout of a block: where each parameter lies in it, and what two blocks differ in.
//
// Parameters of this phone come from the maker's conversion library, the one thing outside
// interface/ that the client stands on; parameters.cpp alone asks it.

#ifndef ZYL_CLIENT_PARAMETERS_H
#define ZYL_CLIENT_PARAMETERS_H

#include <string>
#include <vector>

#include "client/library/files.h"
#include "client/library/json.h"

// Rows of the table that the client knows a meaning of.
enum Row : size_t {
    kRowEffect1 = 0,
    kRowEffect2 = 1,
    kRowStereo = 2,
    kRowFirstGain = 3,
    kRowEqualiser = 13,
    kRowFirstForced = 14,
    kRowEndForced = 26,
    kRowEffect3 = 26,
    kRowEffect4 = 27,
    kRowListeningTest = 28,
    kRowCount = 29,
};

struct Parameter {
    std::string name;
    uint32_t id;
    size_t size;
    size_t offset;

    bool within(const Bytes& block) const {
        return offset <= block.size() && size <= block.size() - offset;
    }
};

// In the order of the rows.
const std::vector<Parameter>& parameters();
size_t blockSize();

// Reads up to four bytes as the number that the DSP takes them for; missing ones count as 0.
uint32_t wordAt(const Bytes& block, size_t offset, size_t size);

struct Difference {
    std::string name;  // the parameter's, or "data" for bytes that belong to none
    size_t offset;
    size_t size;
    std::string first;
    std::string second;
};

// Parameter by parameter, then run by run of what belongs to none. Both blocks have blockSize().
std::vector<Difference> compareBlocks(const Bytes& first, const Bytes& second);

// As an array; `first` and `second` name the members with the values.
void addToJson(Json& json, const std::vector<Difference>& differences, const char* first,
               const char* second);

// A line each on standard output; of data, the first few.
void printDifferences(const std::vector<Difference>& differences, const char* first,
                      const char* second);

#endif  // ZYL_CLIENT_PARAMETERS_H
