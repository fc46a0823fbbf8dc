#include "driver/parameter_table.h"

#include "driver/zyl_convert_api.h"

ParameterTableEntry g_parameterTable[kParameterRowCount];

void fillParameterTable() {
    for (int row = 0; row < kParameterRowCount; ++row) {
        ParameterTableEntry& entry = g_parameterTable[row];
        ZYL_Convert_API_GetParameterTableInfo(static_cast<_zylQuorinPipelineParamEnum>(row),
                                              &entry.id, &entry.size, &entry.offset);
    }
}
