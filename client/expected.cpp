#include "client/expected.h"

#include <unistd.h>

#include <algorithm>

#include "client/library/parse.h"
#include "client/library/state.h"
#include "client/library/tunings.h"

namespace {

constexpr int32_t kSpeaker = 0;
constexpr int32_t kLineout = 1;

// What the effect's parameters hold while it is off; while it is on, they hold 0.
constexpr uint32_t kEffectOffFirstPair = 23;
constexpr uint32_t kEffectOffSecondPair = 31;
constexpr uint32_t kForcedStereoMode = 3;

// A block under construction.
class Overlay {
  public:
    Overlay(Bytes& block, const Bytes& found) : mBlock(block), mFound(found) {}

    // The place holds the number, in `size` bytes, whatever was there. Places outside are left out.
    void put(size_t offset, uint32_t number, size_t size = sizeof(uint32_t)) {
        if (!inside(offset, size)) return;
        for (size_t i = 0; i < size; ++i) {
            mBlock[offset + i] = static_cast<uint8_t>(number >> (8 * i));
        }
    }

    // The place may hold either number.
    void putEither(size_t offset, uint32_t number, uint32_t other) {
        put(offset, wordAt(mFound, offset, sizeof(uint32_t)) == other ? other : number);
    }

    // What a parameter has behind its first word is the file's after a load, and 0 after the
    // parameter was written by itself.
    void allowZeros(size_t offset, size_t end) {
        if (!inside(offset, end - offset)) return;
        const auto first = mFound.begin() + static_cast<ptrdiff_t>(offset);
        const auto last = mFound.begin() + static_cast<ptrdiff_t>(end);
        if (std::any_of(first, last, [](uint8_t byte) { return byte != 0; })) return;
        std::fill_n(mBlock.begin() + static_cast<ptrdiff_t>(offset), end - offset, uint8_t{0});
    }

  private:
    bool inside(size_t offset, size_t size) const {
        return offset <= mBlock.size() && size <= mBlock.size() - offset;
    }

    Bytes& mBlock;
    const Bytes& mFound;
};

void putParameter(Overlay& overlay, size_t row, uint32_t number, size_t width = sizeof(uint32_t)) {
    const Parameter& parameter = parameters()[row];
    overlay.put(parameter.offset, number, width);
    if (parameter.size > width) {
        overlay.allowZeros(parameter.offset + width, parameter.offset + parameter.size);
    }
}

// The first and the second pair lie at different distances. Devices have it so.
void putEffect(Overlay& overlay, bool on) {
    const uint32_t firstPair = on ? 0 : kEffectOffFirstPair;
    const uint32_t secondPair = on ? 0 : kEffectOffSecondPair;
    const Parameter& second = parameters()[kRowEffect2];
    const Parameter& third = parameters()[kRowEffect3];
    const size_t step = parameters()[kRowEffect4].size;
    for (size_t i = 1; i <= 2; ++i) {
        overlay.putEither(second.offset + i * second.size, firstPair,
                          kEffectOffFirstPair - firstPair);
        overlay.putEither(third.offset + i * step, secondPair, kEffectOffSecondPair - secondPair);
    }
    putParameter(overlay, kRowEffect1, firstPair);
    putParameter(overlay, kRowEffect2, firstPair);
    putParameter(overlay, kRowEffect3, secondPair);
    putParameter(overlay, kRowEffect4, secondPair);
}

Outcome findFile(Connection& connection, int32_t number, bool on, std::string* file) {
    const std::string route = kRouteNames[number];
    Value generation;
    Outcome status = readValue(connection, property("generation"), &generation);
    if (!status.ok()) return status;
    if (generation.text == "none") return resultOf("verify", kZylKwoNotAvailable);
    if (generation.text == "maldor") {
        *file = "/data/misc/zyl/current_" + route;
        if (number == kSpeaker) *file += on ? "_on" : "_off";
        return done();
    }
    if (number == kSpeaker && !on) {
        *file = "/etc/zyl/speaker_off";
        return done();
    }
    Value tuning;
    status = readValue(connection, property("tuning." + route), &tuning);
    if (!status.ok()) return status;
    *file = tuningFile(number, static_cast<int32_t>(tuning.numbers[0]));
    // Not every device comes with this one; the service then falls back.
    const char* const optional = "/etc/zyl/lineout_3";
    if (number == kLineout && *file == optional && access(optional, R_OK) != 0) {
        *file = "/etc/zyl/lineout_1";
    }
    return status;
}

Outcome layOver(Connection& connection, int32_t number, bool on, Overlay& overlay) {
    Value stereo;
    Value gains;
    Value equaliser;
    Outcome status = readValue(connection, property("stereo"), &stereo);
    if (status.ok()) status = readValue(connection, property("gains"), &gains);
    if (status.ok()) status = readValue(connection, property("geq"), &equaliser);
    if (!status.ok()) return status;
    // The speaker's tuning files carry effect and stereo mode themselves.
    if (number != kSpeaker) {
        putEffect(overlay, on);
        putParameter(overlay, kRowStereo, static_cast<uint32_t>(stereo.numbers[0]));
    }
    if (on) {
        putParameter(overlay, kRowEqualiser, static_cast<uint32_t>(equaliser.numbers[0]));
    }
    for (size_t band = 0; band < gains.numbers.size(); ++band) {
        putParameter(overlay, kRowFirstGain + band, static_cast<uint32_t>(gains.numbers[band]),
                     sizeof(uint16_t));
    }
    return done();
}

bool looksForced(const Bytes& block) {
    const auto word = [&block](size_t row) {
        return wordAt(block, parameters()[row].offset, parameters()[row].size);
    };
    if (word(kRowStereo) != kForcedStereoMode) return false;
    for (size_t row = kRowFirstForced; row < kRowEndForced; ++row) {
        if (word(row) != 0) return false;
    }
    return true;
}

// As forced mode leaves a block, whatever the settings say.
void layForcedOver(Bytes& block, const Bytes& found) {
    Overlay overlay(block, found);
    putParameter(overlay, kRowStereo, kForcedStereoMode);
    for (size_t row = kRowFirstForced; row < kRowEndForced; ++row) {
        const Parameter& parameter = parameters()[row];
        if (!parameter.within(block)) continue;
        std::fill_n(block.begin() + static_cast<ptrdiff_t>(parameter.offset), parameter.size,
                    uint8_t{0});
    }
}

}  // namespace

Outcome expectBlock(Connection& connection, int32_t number, const Bytes& found,
                    Expected* expected) {
    Value enabled;
    Outcome status = readValue(connection, property("effect"), &enabled);
    if (status.ok()) status = findFile(connection, number, enabled.on(), &expected->file);
    if (status.ok()) status = readFile(expected->file, &expected->block);
    if (!status.ok()) return status;
    if (expected->block.size() < found.size()) {
        return refusal(expected->file, "shorter than a block", "replace it by a whole one");
    }
    expected->block.resize(found.size());
    Overlay overlay(expected->block, found);
    status = layOver(connection, number, enabled.on(), overlay);
    if (!status.ok() || enabled.on()) return status;
    const Parameter& equaliser = parameters()[kRowEqualiser];
    overlay.put(equaliser.offset, wordAt(found, equaliser.offset, sizeof(uint32_t)));
    expected->unknown = equaliser.name + ": not checked while the effect is off";
    return done();
}

Outcome examineBlock(Connection& connection, int32_t number, Verdict* verdict) {
    Bytes found;
    verdict->number = number;
    verdict->forced = false;
    Outcome status = resultOf(kRouteNames[number], connection.fetchBlock(number, &found));
    if (!status.ok()) return status;
    if (found.size() != blockSize()) {
        return refusal(kRouteNames[number],
                       "the service's blocks are of another size than the layout");
    }
    status = expectBlock(connection, number, found, &verdict->expected);
    if (!status.ok()) return status;
    verdict->differences = compareBlocks(verdict->expected.block, found);
    verdict->forced = number != kSpeaker && !verdict->differences.empty() && looksForced(found);
    if (!verdict->forced) return done();
    layForcedOver(verdict->expected.block, found);
    verdict->differences = compareBlocks(verdict->expected.block, found);
    return done();
}

bool followsEffect(Connection& connection, int32_t number, const Bytes& found) {
    if (found.size() != blockSize()) return true;
    if (number == kSpeaker) {
        // There the effect is a matter of the whole tuning file, which was just loaded.
        Expected expected;
        return !expectBlock(connection, number, found, &expected).ok() || expected.block == found;
    }
    Value enabled;
    if (!readValue(connection, property("effect"), &enabled).ok()) return true;
    Bytes block = found;
    Overlay overlay(block, found);
    putEffect(overlay, enabled.on());
    return block == found;
}
