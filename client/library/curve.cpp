#include "client/library/curve.h"

#include <algorithm>
#include <cmath>

#include "client/library/filters.h"
#include "client/library/parse.h"
#include "interface/Izyl_kwo_service.h"

namespace {

using Words = std::vector<std::string>;

constexpr char kGraphic[] = "graphiceq:";
constexpr char kPreamp[] = "preamp:";
constexpr char kFilter[] = "filter";
constexpr double kShelfQuality = 0.7071;

struct Point {
    double hertz;
    double decibels;
};

// In a straight line over the logarithm of the frequency, level beyond both ends.
double interpolate(const std::vector<Point>& points, double hertz) {
    size_t right = 0;
    while (right < points.size() && points[right].hertz < hertz) ++right;
    if (right == 0) return points.front().decibels;
    if (right == points.size()) return points.back().decibels;
    const Point& low = points[right - 1];
    const Point& high = points[right];
    const double place = std::log(hertz / low.hertz) / std::log(high.hertz / low.hertz);
    return low.decibels + place * (high.decibels - low.decibels);
}

// What a file asks for, at any frequency.
struct Target {
    std::vector<Point> points;
    std::vector<Filter> filters;
    double preamp = 0;

    double at(double hertz) const {
        double sum = preamp + (points.empty() ? 0 : interpolate(points, hertz));
        for (const Filter& filter : filters) sum += responseAt(filter, hertz);
        return sum;
    }
    // Where it bends.
    std::vector<double> corners() const {
        std::vector<double> corners;
        for (const Point& point : points) corners.push_back(point.hertz);
        for (const Filter& filter : filters) corners.push_back(filter.hertz);
        return corners;
    }
};

bool startsWith(const std::string& text, const std::string& start) {
    return text.compare(0, start.size(), start) == 0;
}

Outcome parsePoints(const std::string& where, const std::string& list, Target* target) {
    for (const std::string& pair : splitWords(list, ";")) {
        const Words words = splitWords(pair);
        if (words.empty()) continue;
        Point point = {};
        if (words.size() != 2 || !parseReal(words[0], &point.hertz) || point.hertz <= 0 ||
            !parseReal(words[1], &point.decibels)) {
            return refusal(where, "'" + trim(pair) + "' is not a frequency and a gain");
        }
        if (!target->points.empty() && point.hertz <= target->points.back().hertz) {
            return refusal(where, "'" + trim(pair) + "' is not above the frequency before it");
        }
        target->points.push_back(point);
    }
    return target->points.empty() ? refusal(where, "no points") : done();
}

// The number behind a word: "gain -2.5 db". False when there is none.
bool numberAfter(const Words& words, const char* name, double* number) {
    for (size_t i = 0; i + 1 < words.size(); ++i) {
        if (words[i] == name) return parseReal(words[i + 1], number);
    }
    return false;
}

bool kindOf(const std::string& word, Filter::Kind* kind) {
    const bool peak = word == "pk" || word == "peq" || word == "modal";
    const bool low = word == "ls" || word == "lsc" || word == "lsq";
    const bool high = word == "hs" || word == "hsc" || word == "hsq";
    *kind = peak ? Filter::kPeak : low ? Filter::kLowShelf : Filter::kHighShelf;
    return peak || low || high;
}

// "filter 3: on pk fc 105 hz gain -2.5 db q 0.70"
Outcome parseFilter(const std::string& where, const std::string& line, Target* target,
                    Curve* curve) {
    const size_t colon = line.find(':');
    const Words words = splitWords(line.substr(colon + 1));
    if (words.size() < 2 || words[0] != "on" || words[1] == "none") return done();
    Filter filter = {Filter::kPeak, 0, 0, 0};
    if (!kindOf(words[1], &filter.kind)) {
        curve->lost.push_back(where + ": filters of the kind " + words[1] + " are left out");
        return done();
    }
    if (filter.kind != Filter::kPeak) filter.quality = kShelfQuality;
    if (!numberAfter(words, "fc", &filter.hertz) || !numberAfter(words, "gain", &filter.decibels) ||
        filter.hertz <= 0) {
        return refusal(where, "the filter has no Fc or no Gain");
    }
    numberAfter(words, "q", &filter.quality);
    if (filter.quality <= 0) return refusal(where, "the filter has no Q");
    target->filters.push_back(filter);
    return done();
}

Outcome parseTarget(const std::string& name, const Words& lines, Target* target, Curve* curve) {
    for (size_t i = 0; i < lines.size(); ++i) {
        const std::string where = format("%s:%zu", name.c_str(), i + 1);
        const std::string line = lowerCase(trim(lines[i]));
        Outcome outcome;
        if (startsWith(line, kGraphic)) {
            outcome = parsePoints(where, line.substr(sizeof(kGraphic) - 1), target);
        } else if (startsWith(line, kPreamp)) {
            const Words words = splitWords(line.substr(sizeof(kPreamp) - 1));
            if (words.empty() || !parseReal(words[0], &target->preamp)) {
                outcome = refusal(where, "the preamp has no gain");
            }
        } else if (startsWith(line, kFilter) && line.find(':') != std::string::npos) {
            outcome = parseFilter(where, line, target, curve);
        }
        if (!outcome.ok()) return outcome;
    }
    return done();
}

double clamped(double gain) {
    return std::max(kLowestGain, std::min(kHighestGain, gain));
}

// The bands' gains, and what they do not reach.
void render(const Target& target, const Bands& bands, Curve* curve) {
    std::vector<Point> rendered;
    for (size_t band = 0; band < bands.size(); ++band) {
        const double wanted = target.at(bands[band]);
        const double gain = clamped(gainOf(wanted));
        if (gain != gainOf(wanted)) {
            curve->lost.push_back(nameOfBand(bands, band) + ": " + formatDecibels(wanted) +
                                  ", the equaliser goes to " + formatDecibels(decibelsOf(gain)));
        }
        curve->gains.push_back(gain);
        rendered.push_back({bands[band], wanted});
    }
    constexpr double kNoticeable = 1;
    Point worst = {0, 0};
    for (double corner : target.corners()) {
        const double off = target.at(corner) - interpolate(rendered, corner);
        if (std::fabs(off) > std::fabs(worst.decibels)) worst = {corner, off};
    }
    if (std::fabs(worst.decibels) < kNoticeable) return;
    curve->lost.push_back("between the bands: " + formatDecibels(worst.decibels) + " at " +
                          formatFrequency(std::round(worst.hertz)) +
                          (worst.decibels > 0 ? " more" : " less") + " is asked for");
}

// A blank before "dB" belongs to the number.
Words splitGains(const std::string& line) {
    Words gains;
    for (const std::string& word : splitWords(line, ", \t\r")) {
        if (lowerCase(word) == "db" && !gains.empty()) {
            gains.back() += word;
        } else {
            gains.push_back(word);
        }
    }
    return gains;
}

Outcome parsePlain(const std::string& name, const Words& lines, Curve* curve) {
    for (size_t i = 0; i < lines.size(); ++i) {
        for (const std::string& word : splitGains(lines[i])) {
            const std::string where = format("%s:%zu", name.c_str(), i + 1);
            double wanted = 0;
            if (!parseGain(word, &wanted)) {
                return refusal(where, "'" + word + "' is not a gain: " + kGainRange);
            }
            double decibels = 0;
            const double gain = clamped(wanted);
            if (gain != wanted && !parseDecibels(word, &decibels)) {
                return refusal(where, word + " is out of range; it takes a gain: " + kGainRange);
            }
            if (gain != wanted) {
                curve->lost.push_back(nameOfBand({}, curve->gains.size()) + ": " +
                                      formatDecibels(decibels) + ", the equaliser goes to " +
                                      formatDecibels(decibelsOf(gain)));
            }
            curve->gains.push_back(gain);
        }
    }
    if (curve->gains.size() == kGEQBandCount) return done();
    return refusal(name, format("no curve: neither %d gains, of which it has %zu, nor GraphicEQ: "
                                "nor Filter lines",
                                kGEQBandCount, curve->gains.size()));
}

Words linesOf(const std::string& text) {
    Words lines;
    for (size_t start = 0; start < text.size();) {
        const size_t end = std::min(text.find('\n', start), text.size());
        const std::string line = text.substr(start, end - start);
        lines.push_back(line.substr(0, line.find('#')));
        start = end + 1;
    }
    return lines;
}

}  // namespace

Outcome parseCurve(const std::string& name, const std::string& text, const Bands& bands,
                   Curve* curve) {
    *curve = Curve();
    const Words lines = linesOf(text);
    Target target;
    Outcome parsed = parseTarget(name, lines, &target, curve);
    if (!parsed.ok()) return parsed;
    if (target.points.empty() && target.filters.empty()) return parsePlain(name, lines, curve);
    if (bands.empty()) {
        return refusal(name, "the centres of the bands are not known",
                       "give them with --bands, or give ten gains in the order of the bands");
    }
    render(target, bands, curve);
    return done();
}

std::string formatCurve(const std::vector<double>& gains, const Bands& bands) {
    std::string text = "# The gains of the equaliser, a line a band.\n";
    for (size_t band = 0; band < gains.size(); ++band) {
        text += format("%-6.0f # %s, %s\n", gains[band], nameOfBand(bands, band).c_str(),
                       formatDecibels(decibelsOf(gains[band])).c_str());
    }
    return text;
}
