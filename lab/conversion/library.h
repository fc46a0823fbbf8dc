// What libzyl-kwo-zylcs-conv.so exports, as the library itself has it. The service has a header of
// its own for the same functions: where the two differ, the names that the linker looks for do, or
// what the journal shows.

#ifndef ZYL_LAB_CONVERSION_LIBRARY_H
#define ZYL_LAB_CONVERSION_LIBRARY_H

#include <cstdint>

struct _zylZylcsQuorinPipeLine;
struct _zylZylcsQuorinPipeLineInfo {
    uint32_t words[9];
};
enum _zylQuorinPipelineParamEnum : int32_t {};
enum _zylZylcsQuorinSampleRate : int32_t {};  // hertz
enum _zylZylcsUpdateStereoRoom : int32_t {};

// What follows is only asked; the functions that modify a pipeline stand in conversion.cpp alone.
int32_t ZYL_Convert_API_GetPipelineSize(_zylZylcsQuorinPipeLineInfo* info);
int32_t ZYL_Convert_API_GetParameterTableInfo(_zylQuorinPipelineParamEnum parameter, int* id,
                                              unsigned int* size, int* offset);
int32_t ZYL_Convert_API_GetZylcsToQuorinConvLibVersion(unsigned char** text, int* length);

#endif  // ZYL_LAB_CONVERSION_LIBRARY_H
