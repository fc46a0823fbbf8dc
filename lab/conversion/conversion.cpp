// The conversion library's stand-in.

#include <algorithm>
#include <iterator>

#include "driver/zyl_convert_api.h"
#include "lab/conversion/layout.h"
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

// Tuning data is not understood yet: the calls are journalled and leave the pipeline as it is.

int32_t ZYL_Convert_API_ModifyQuorinPipelineWithListeningTest(float a, float b, float c, float d,
                                                              _zylZylcsQuorinPipeLine*) {
    journal("conv ListeningTest a=%g b=%g c=%g d=%g result=0", static_cast<double>(a),
            static_cast<double>(b), static_cast<double>(c), static_cast<double>(d));
    return 0;
}

int32_t ZYL_Convert_API_ModifyQuorinPipelineWithZylcsStereoRooms(
        int mode, _zylZylcsQuorinSampleRate rate, _zylZylcsUpdateStereoRoom update,
        const unsigned char*, int zylcsLength, unsigned char*, int workLength,
        _zylZylcsQuorinPipeLine*) {
    journal("conv ZylcsStereoRooms mode=%d rate=%d update=%d data=%d work=%d result=0", mode, rate,
            update, zylcsLength, workLength);
    return 0;
}

int32_t ZYL_Convert_API_ModifyQuorinPipelineWithSpeakerZylcsTuning(
        int& mode, _zylZylcsQuorinSampleRate rate, const unsigned char*, int zylcsLength,
        unsigned char*, int workLength, _zylZylcsQuorinPipeLine*) {
    journal("conv SpeakerZylcsTuning mode=%d rate=%d data=%d work=%d result=0", mode, rate,
            zylcsLength, workLength);
    return 0;
}

int32_t ZYL_Convert_API_ModifyQuorinPipelineWithAccessoryZylcsTuning(
        int mode, _zylZylcsQuorinSampleRate rate, const unsigned char*, int zylcsLength,
        unsigned char*, int workLength, _zylZylcsQuorinPipeLine*) {
    journal("conv AccessoryZylcsTuning mode=%d rate=%d data=%d work=%d result=0", mode, rate,
            zylcsLength, workLength);
    return 0;
}

int32_t ZYL_Convert_API_ModifyQuorinPipelineWithZylcsMultiChannelRoom(
        int mode, _zylZylcsQuorinSampleRate rate, const unsigned char*, int zylcsLength,
        unsigned char*, int workLength, _zylZylcsQuorinPipeLine*) {
    journal("conv ZylcsMultiChannelRoom mode=%d rate=%d data=%d work=%d result=0", mode, rate,
            zylcsLength, workLength);
    return 0;
}
