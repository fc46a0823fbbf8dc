// How the client's library reads arguments, curves and bands.

#include "client/library/curve.h"

#include <cmath>

#include "client/library/filters.h"
#include "client/library/parse.h"
#include "tests/support/phone.h"

namespace {

using testing::HasSubstr;

const Bands kOctaves = {31.25, 62.5, 125, 250, 500, 1000, 2000, 4000, 8000, 16000};

TEST(Parse, GainsFollowOneRule) {
    const struct {
        const char* text;
        double gain;  // -1: none
    } kRows[] = {
            {"4096", 4096},      {"0", 0},        {"+0", 4096},  {"0.5", 4339},
            {"+3db", 5786},      {"+3 dB", 5786}, {"3dB", 5786}, {"-1.5", 3446},
            {".5 DB", 4339},     {"5", 5},        {"1e3", -1},   {"", -1},
            {"dB", -1},          {"+", -1},       {"3 d", -1},   {"0x1000", 4096},
            {"99999999999", -1},
    };
    for (const auto& row : kRows) {
        double gain = -1;
        parseGain(row.text, &gain);
        EXPECT_EQ(row.gain, gain) << row.text;
    }
}

TEST(Parse, NumbersEndWhereAWordEnds) {
    const struct {
        const char* text;
        int64_t number;  // INT64_MIN: none
    } kRows[] = {
            {"-2147483648", INT32_MIN},
            {"2147483647", INT32_MAX},
            {"2147483648", INT64_MIN},
            {"-2147483649", INT64_MIN},
            {"0xffffffff", -1},
            {"0x100000000", INT64_MIN},
            {"-0x1", INT64_MIN},
            {" 1", INT64_MIN},
            {"1 ", INT64_MIN},
            {"+1", INT64_MIN},
            {"-", INT64_MIN},
            {"", INT64_MIN},
            {"99999999999999999999", INT64_MIN},
    };
    for (const auto& row : kRows) {
        int32_t number = 0;
        EXPECT_EQ(row.number != INT64_MIN, parseNumber(row.text, &number)) << row.text;
        EXPECT_EQ(row.number == INT64_MIN ? 0 : row.number, number) << row.text;
    }
}

// Curves

// The gains in decibels, to a tenth.
std::vector<double> decibels(const Curve& curve) {
    std::vector<double> rounded;
    for (double gain : curve.gains) rounded.push_back(std::round(decibelsOf(gain) * 10) / 10 + 0.0);
    return rounded;
}

TEST(Curve, IsBroughtToTheBands) {
    const struct {
        const char* text;
        std::vector<double> wanted;
        size_t lost;
    } kRows[] = {
            {"4096 +3 dB -1.5dB 0.5\n# remark\n0dB,0dB,0dB, 0dB 0dB\t32767 # the last",
             {0, 3, -1.5, 0.5, 0, 0, 0, 0, 0, 18.1},
             0},
            // Level outside of the points, straight over the logarithm between them.
            {"GraphicEQ: 125 -6; 500 2", {-6, -6, -6, -2, 2, 2, 2, 2, 2, 2}, 0},
            {"Preamp: -4 dB\nGraphicEQ: 1000 6;", {2, 2, 2, 2, 2, 2, 2, 2, 2, 2}, 0},
            // What lies between two bands does not reach them.
            {"GraphicEQ: 1000 0; 1414 9; 2000 0", {0, 0, 0, 0, 0, 0, 0, 0, 0, 0}, 1},
            // Out of range at the ends; the equaliser goes from -15 to +18.
            {"GraphicEQ: 31.25 -20; 16000 25", {-15, -15, -10, -5, 0, 5, 10, 15, 18.1, 18.1}, 3},
            {"Preamp: -3.5 dB\nFilter 1: ON PK Fc 1000 Hz Gain 3.5 dB Q 8\n"
             "Filter 2: OFF PK Fc 62.5 Hz Gain 9 dB Q 1\nFilter 3: ON None",
             {-3.5, -3.5, -3.5, -3.5, -3.5, 0, -3.5, -3.5, -3.5, -3.5},
             0},
            {"filter  1: on  ls fc  10 hz  gain  6 db\nFilter 2: ON LPQ Fc 20 Hz Q 1",
             {0.0, 0, 0, 0, 0, 0, 0, 0, 0, 0},
             2},
    };
    for (const auto& row : kRows) {
        Curve curve;
        const Outcome outcome = parseCurve("f", row.text, kOctaves, &curve);
        ASSERT_TRUE(outcome.ok()) << row.text << outcome.why;
        const std::vector<double> found = decibels(curve);
        for (size_t band = 0; band < row.wanted.size(); ++band) {
            EXPECT_NEAR(row.wanted[band], found[band], 0.11) << row.text << " band " << band;
        }
        EXPECT_EQ(row.lost, curve.lost.size()) << row.text << testing::PrintToString(curve.lost);
    }
}

TEST(Curve, SaysWhatIsWrong) {
    const struct {
        const char* text;
        const char* why;
    } kRows[] = {
            {"", "of which it has 0"},
            {"1 2 3", "1 is out of range"},
            {"4096 4096", "of which it has 2"},
            {"4096 loud", "'loud' is not a gain"},
            {"GraphicEQ: 100 1; 50 2", "'50 2' is not above"},
            {"GraphicEQ: 100", "'100' is not a frequency and a gain"},
            {"GraphicEQ:", "no points"},
            {"GraphicEQ: 0 1", "not a frequency"},
            {"Preamp: loud\nGraphicEQ: 9 1", "no gain"},
            {"Filter 1: ON PK Fc 100 Hz Q 1", "no Fc or no Gain"},
            {"Filter 1: ON PK Fc 100 Hz Gain 1 dB", "no Q"},
    };
    for (const auto& row : kRows) {
        Curve curve;
        const Outcome outcome = parseCurve("f", row.text, kOctaves, &curve);
        EXPECT_EQ(kRefused, outcome.status) << row.text;
        EXPECT_THAT(outcome.why, HasSubstr(row.why)) << row.text;
    }
    Curve curve;
    EXPECT_THAT(parseCurve("f", "GraphicEQ: 10 1", {}, &curve).why, HasSubstr("not known"));
}

TEST(Curve, IsReadBackAsItWasSaved) {
    std::vector<double> gains;
    for (int band = 0; band < kGEQBandCount; ++band) gains.push_back(725 + 3557 * band);
    for (const Bands& bands : {kOctaves, Bands()}) {
        Curve curve;
        ASSERT_TRUE(parseCurve("f", formatCurve(gains, bands), {}, &curve).ok());
        EXPECT_EQ(gains, curve.gains);
    }
}

TEST(Filters, HaveTheirGainWhereTheyShould) {
    const struct {
        Filter filter;
        double hertz;
        double decibels;
    } kRows[] = {
            {{Filter::kPeak, 1000, 6, 1}, 1000, 6},
            {{Filter::kPeak, 1000, -9, 4}, 1000, -9},
            {{Filter::kPeak, 1000, 6, 1}, 10, 0},
            {{Filter::kPeak, 1000, 6, 1}, 1e5, 0},
            {{Filter::kLowShelf, 100, 8, 0.7}, 1, 8},
            {{Filter::kLowShelf, 100, 8, 0.7}, 100, 4},
            {{Filter::kLowShelf, 100, 8, 0.7}, 1e4, 0},
            {{Filter::kHighShelf, 100, 8, 0.7}, 1, 0},
            {{Filter::kHighShelf, 100, 8, 0.7}, 100, 4},
            {{Filter::kHighShelf, 100, 8, 0.7}, 1e4, 8},
    };
    for (const auto& row : kRows) {
        EXPECT_NEAR(row.decibels, responseAt(row.filter, row.hertz), 0.01)
                << row.filter.hertz << " at " << row.hertz;
    }
}

TEST(Bands, AreTenAscendingFrequencies) {
    const struct {
        const char* text;
        bool good;
    } kRows[] = {
            {"31.5 63 125 250 500 1k 2K 4k 8k 16k", true},
            {"# Hz\n31.5,63,125,250,500\n1000 2000 4000 8000 16000 # kHz", true},
            {"1 2 3", false},
            {"31 63 125 250 250 1k 2k 4k 8k 16k", false},
            {"31 63 125 250 500 1k 2k 4k 8k sixteen", false},
            {"0 63 125 250 500 1k 2k 4k 8k 16k", false},
            {"31 63 125 250 500 1k 2k 4k 8k 16k 20k", false},
    };
    for (const auto& row : kRows) {
        Bands bands;
        EXPECT_EQ(row.good, parseBands("f", row.text, &bands).ok()) << row.text;
        EXPECT_EQ(row.good ? 10U : 0U, bands.size()) << row.text;
    }
}

}  // namespace
