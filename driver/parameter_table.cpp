#include "driver/parameter_table.h"

#include <android/log.h>

#include <climits>

#include "driver/driver_log.h"
#include "driver/pipeline.h"
#include "driver/zyl_convert_api.h"

ParameterTableEntry g_parameterTable[kParameterRowCount];

namespace {

// Sizes are added to an offset. From this one, no size leads into a pipeline.
constexpr int32_t kNowhere = INT32_MIN;

void refuse(int row, ParameterTableEntry& entry) {
    __android_log_print(ANDROID_LOG_ERROR, kDriverLogTag,
                        "void fillParameterTable(): row %d is refused, its size of %u is too large",
                        row, entry.size);
    entry.size = 0;
    entry.offset = kNowhere;
}

}  // namespace

void fillParameterTable() {
    for (int row = 0; row < kParameterRowCount; ++row) {
        ParameterTableEntry& entry = g_parameterTable[row];
        ZYL_Convert_API_GetParameterTableInfo(static_cast<_zylQuorinPipelineParamEnum>(row),
                                              &entry.id, &entry.size, &entry.offset);
        if (entry.size > kLargestPipeline) refuse(row, entry);
    }
}
