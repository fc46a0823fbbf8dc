// The interface of the maker's conversion library, libzyl-kwo-zylcs-conv.so.
//
// The library alone knows the layout of the Quorin pipeline, the parameter image that drives the
// DSP effect, and how zylcs tuning data becomes pipeline contents. It is closed; this header is all
// that the service knows of it. Its functions have C++ linkage. The service does not assume that
// the Modify functions are thread-safe, and calls them under gRecordLock. Nothing here allocates
// for the caller or takes ownership.

#ifndef ZYL_DRIVER_ZYL_CONVERT_API_H
#define ZYL_DRIVER_ZYL_CONVERT_API_H

#include <cstdint>

// The names are the library's. NOLINTBEGIN(bugprone-reserved-identifier)

// The library's description of the pipeline. `words[0]` is the size of one pipeline image in bytes;
// `words[2]` is unused; the others are layout words that go to the DSP unchanged.
struct _zylZylcsQuorinPipeLineInfo {
    uint32_t words[9];
};
static_assert(sizeof(_zylZylcsQuorinPipeLineInfo) == 36, "the library fills nine 32-bit words");

// A pipeline image, seen as the library sees it; callers pass a pointer to its first byte.
struct _zylZylcsQuorinPipeLine;

// Selects one of the 29 parameters of the pipeline, 0 to 28.
enum _zylQuorinPipelineParamEnum : int32_t {};

// A sample rate in hertz.
enum _zylZylcsQuorinSampleRate : int32_t {
    kSampleRate44100 = 44100,
    kSampleRate48000 = 48000,
};

// Which output a stereo room was chosen for.
enum _zylZylcsUpdateStereoRoom : int32_t {
    kStereoRoomForBluetooth = 0,
    kStereoRoomForLineout = 1,
};

// Fills `info`, with the same words as long as the process lives.
int32_t ZYL_Convert_API_GetPipelineSize(_zylZylcsQuorinPipeLineInfo* info);

// Fills the parameter's id, its size in bytes and its byte offset within the pipeline.
int32_t ZYL_Convert_API_GetParameterTableInfo(_zylQuorinPipelineParamEnum parameter, int* id,
                                              unsigned int* size, int* offset);

// Points `text` at a NUL-terminated version text that the library owns, or sets it to null.
int32_t ZYL_Convert_API_GetZylcsToQuorinConvLibVersion(unsigned char** text, int* length);

// The Modify functions change `pipeline` in place. Result: 0 on success, -1 to -9 for the library's
// own failures; anything else is an unknown failure. `work` is a work area of the client's.
int32_t ZYL_Convert_API_ModifyQuorinPipelineWithListeningTest(float a, float b, float c, float d,
                                                              _zylZylcsQuorinPipeLine* pipeline);

int32_t ZYL_Convert_API_ModifyQuorinPipelineWithZylcsStereoRooms(
        int mode, _zylZylcsQuorinSampleRate rate, _zylZylcsUpdateStereoRoom update,
        const unsigned char* zylcs, int zylcsLength, unsigned char* work, int workLength,
        _zylZylcsQuorinPipeLine* pipeline);

int32_t ZYL_Convert_API_ModifyQuorinPipelineWithSpeakerZylcsTuning(
        int& mode, _zylZylcsQuorinSampleRate rate, const unsigned char* zylcs, int zylcsLength,
        unsigned char* work, int workLength, _zylZylcsQuorinPipeLine* pipeline);

int32_t ZYL_Convert_API_ModifyQuorinPipelineWithAccessoryZylcsTuning(
        int mode, _zylZylcsQuorinSampleRate rate, const unsigned char* zylcs, int zylcsLength,
        unsigned char* work, int workLength, _zylZylcsQuorinPipeLine* pipeline);

int32_t ZYL_Convert_API_ModifyQuorinPipelineWithZylcsMultiChannelRoom(
        int mode, _zylZylcsQuorinSampleRate rate, const unsigned char* zylcs, int zylcsLength,
        unsigned char* work, int workLength, _zylZylcsQuorinPipeLine* pipeline);

// NOLINTEND(bugprone-reserved-identifier)

#endif  // ZYL_DRIVER_ZYL_CONVERT_API_H
