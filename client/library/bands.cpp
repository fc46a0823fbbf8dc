#include "client/library/bands.h"

#include <unistd.h>

#include "client/library/files.h"
#include "client/library/parse.h"
#include "interface/Izyl_kwo_service.h"

namespace {

constexpr const char* kFiles[] = {"/etc/zyl/bands", "/data/misc/zyl/bands"};
constexpr char kListCharacters[] = "0123456789.,kK ";

bool parseFrequency(std::string text, double* hertz) {
    double unit = 1;
    if (lowerCase(text).back() == 'k') {
        unit = 1000;
        text.pop_back();
    }
    if (!parseReal(text, hertz) || *hertz <= 0) return false;
    *hertz *= unit;
    return true;
}

}  // namespace

Outcome parseBands(const std::string& where, const std::string& text, Bands* bands) {
    Bands found;
    for (const std::string& line : splitWords(text, "\n")) {
        for (const std::string& word : splitWords(line.substr(0, line.find('#')), ", \t\r")) {
            double hertz = 0;
            if (!parseFrequency(word, &hertz)) {
                return wrongUsage(where, word, "a frequency in Hz, such as 31.5 or 16k");
            }
            if (!found.empty() && hertz <= found.back()) {
                return wrongUsage(where, word, "above the band before it");
            }
            found.push_back(hertz);
        }
    }
    if (found.size() != kGEQBandCount) {
        Outcome outcome = wrongUsage(where, "", "");
        outcome.why =
                format("takes the centres of %d bands, %zu given", kGEQBandCount, found.size());
        return outcome;
    }
    *bands = found;
    return done();
}

Outcome findBands(const std::string& given, Bands* bands) {
    std::string file = given;
    if (given.empty()) {
        for (const char* name : kFiles) {
            if (file.empty() && access(name, R_OK) == 0) file = name;
        }
        if (file.empty()) return done();
    } else if (given.find_first_not_of(kListCharacters) == std::string::npos) {
        return parseBands("--bands", given, bands);
    }
    std::string text;
    Outcome read = readTextFile(file, &text);
    return read.ok() ? parseBands(file, text, bands) : read;
}

std::string nameOfBand(const Bands& bands, size_t band) {
    const std::string name = format("band %zu", band);
    return band < bands.size() ? name + " (" + formatFrequency(bands[band]) + ")" : name;
}
