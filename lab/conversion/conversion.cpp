// The conversion library's stand-in. It converts nothing that could be heard, but what it makes of
// a pipeline depends on every argument, so a wrong one shows in the bytes.

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <sstream>
#include <string>

#include "lab/conversion/layout.h"
#include "lab/conversion/library.h"
#include "lab/journal/journal.h"

int32_t ZYL_Convert_API_GetPipelineSize(_zylZylcsQuorinPipeLineInfo* info) {
    std::copy(std::begin(layout().words), std::end(layout().words), info->words);
    return 0;
}

int32_t ZYL_Convert_API_GetParameterTableInfo(_zylQuorinPipelineParamEnum parameter, int* id,
                                              unsigned int* size, int* offset) {
    if (parameter < 0 || parameter >= static_cast<int>(std::size(layout().rows))) return -2;
    const Row& row = layout().rows[parameter];
    *id = row.id;
    *size = row.size;
    *offset = row.offset;
    return 0;
}

int32_t ZYL_Convert_API_GetZylcsToQuorinConvLibVersion(unsigned char** text, int* length) {
    std::optional<std::string>& version = layout().version;
    *text = version ? reinterpret_cast<unsigned char*>(version->data()) : nullptr;
    *length = version ? static_cast<int>(version->size()) : 0;
    return 0;
}

namespace {

// Where the results of the Modify functions go, behind the parameters that have rows: a piece for
// each kind, so that kinds that are applied one after the other all show.
constexpr size_t kConvertedOffset = 1024;
constexpr size_t kPieceSize = 64;
enum Kind { kListeningTest, kStereoRooms, kSpeaker, kAccessory, kMultiChannelRoom, kKindCount };
constexpr size_t kConvertedSize = kKindCount * kPieceSize;

// A digest of everything that a conversion depends on (FNV-1a).
class Digest {
  public:
    void add(const void* bytes, size_t size) {
        for (size_t i = 0; i < size; ++i) {
            mValue = (mValue ^ static_cast<const uint8_t*>(bytes)[i]) * 0x100000001B3;
        }
    }
    template <typename Value>
    void add(const Value& value) {
        add(&value, sizeof(value));
    }

    // More bytes than the digest has, each depending on all that was added.
    void fill(uint8_t* bytes, size_t size) {
        for (size_t i = 0; i < size; ++i) {
            add(static_cast<uint8_t>(i));
            bytes[i] = static_cast<uint8_t>(mValue >> 32);
        }
    }

  private:
    uint64_t mValue = 0xCBF29CE484222325;
};

// What the client asks for: tuning data is a NUL-terminated name and then lines of text, of
// which "result=N" is the only one with a meaning.
int32_t wantedResult(const unsigned char* zylcs, int length) {
    const std::string text(reinterpret_cast<const char*>(zylcs), static_cast<size_t>(length));
    std::istringstream lines(text.substr(std::min(text.find('\0'), text.size())));
    std::string line;
    while (std::getline(lines, line)) {
        const size_t start = line.find("result=");
        if (start != std::string::npos) return atoi(line.c_str() + start + strlen("result="));
    }
    return 0;
}

// The new piece depends on the arguments and on all pieces that were there, and so on the order in
// which conversions were made.
void convert(Kind kind, Digest digest, _zylZylcsQuorinPipeLine* pipeline) {
    uint8_t* pieces = reinterpret_cast<uint8_t*>(pipeline) + kConvertedOffset;
    digest.add(kind);
    digest.add(pieces, kConvertedSize);
    digest.fill(pieces + kind * kPieceSize, kPieceSize);
}

struct Tuning {
    const unsigned char* zylcs;
    int zylcsLength;
    unsigned char* work;
    int workLength;
};

// `name` and `arguments` are the journal's.
int32_t convertTuning(Kind kind, const char* name, const std::string& arguments,
                      const Tuning& tuning, _zylZylcsQuorinPipeLine* pipeline) {
    const int32_t result = wantedResult(tuning.zylcs, tuning.zylcsLength);
    journal("conv %s %s data=%d work=%d result=%d", name, arguments.c_str(), tuning.zylcsLength,
            tuning.workLength, result);
    if (result != 0) return result;
    Digest digest;
    digest.add(arguments.data(), arguments.size());
    digest.add(tuning.zylcs, static_cast<size_t>(tuning.zylcsLength));
    convert(kind, digest, pipeline);
    digest.fill(tuning.work, static_cast<size_t>(tuning.workLength));
    return 0;
}

std::string modeAndRate(int mode, _zylZylcsQuorinSampleRate rate) {
    return "mode=" + std::to_string(mode) + " rate=" + std::to_string(rate);
}

}  // namespace

int32_t ZYL_Convert_API_ModifyQuorinPipelineWithListeningTest(float a, float b, float c, float d,
                                                              _zylZylcsQuorinPipeLine* pipeline) {
    // No tuning data says what is to come of it, so one value does.
    const int32_t result = a == kFailingTestValue ? -9 : 0;
    journal("conv ListeningTest a=%g b=%g c=%g d=%g result=%d", static_cast<double>(a),
            static_cast<double>(b), static_cast<double>(c), static_cast<double>(d), result);
    if (result != 0) return result;
    Digest digest;
    for (float value : {a, b, c, d}) digest.add(value);
    convert(kListeningTest, digest, pipeline);
    return 0;
}

int32_t ZYL_Convert_API_ModifyQuorinPipelineWithZylcsStereoRooms(
        int mode, _zylZylcsQuorinSampleRate rate, _zylZylcsUpdateStereoRoom update,
        const unsigned char* zylcs, int zylcsLength, unsigned char* work, int workLength,
        _zylZylcsQuorinPipeLine* pipeline) {
    return convertTuning(kStereoRooms, "ZylcsStereoRooms",
                         modeAndRate(mode, rate) + " update=" + std::to_string(update),
                         {zylcs, zylcsLength, work, workLength}, pipeline);
}

// The mode is the library's to set.
int32_t ZYL_Convert_API_ModifyQuorinPipelineWithSpeakerZylcsTuning(
        int& mode, _zylZylcsQuorinSampleRate rate, const unsigned char* zylcs, int zylcsLength,
        unsigned char* work, int workLength, _zylZylcsQuorinPipeLine* pipeline) {
    mode = 1;
    return convertTuning(kSpeaker, "SpeakerZylcsTuning", modeAndRate(mode, rate),
                         {zylcs, zylcsLength, work, workLength}, pipeline);
}

int32_t ZYL_Convert_API_ModifyQuorinPipelineWithAccessoryZylcsTuning(
        int mode, _zylZylcsQuorinSampleRate rate, const unsigned char* zylcs, int zylcsLength,
        unsigned char* work, int workLength, _zylZylcsQuorinPipeLine* pipeline) {
    return convertTuning(kAccessory, "AccessoryZylcsTuning", modeAndRate(mode, rate),
                         {zylcs, zylcsLength, work, workLength}, pipeline);
}

int32_t ZYL_Convert_API_ModifyQuorinPipelineWithZylcsMultiChannelRoom(
        int mode, _zylZylcsQuorinSampleRate rate, const unsigned char* zylcs, int zylcsLength,
        unsigned char* work, int workLength, _zylZylcsQuorinPipeLine* pipeline) {
    return convertTuning(kMultiChannelRoom, "ZylcsMultiChannelRoom", modeAndRate(mode, rate),
                         {zylcs, zylcsLength, work, workLength}, pipeline);
}
