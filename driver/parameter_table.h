// The table of the pipeline's parameters, as the conversion library reports them.

#ifndef ZYL_DRIVER_PARAMETER_TABLE_H
#define ZYL_DRIVER_PARAMETER_TABLE_H

#include <cstdint>

#include "interface/zyl_kwo_types.h"

// Rows of the table. The conversion library fixes the numbers; the names say what this service
// uses a row for.
enum ParameterRow : int32_t {
    kRowEffectFirst = 0,
    kRowEffectSecond = 1,
    kRowStereoMode = 2,
    kRowGEQGain = 3,  // band 0; bands 1 to 9 follow and lie side by side in the pipeline
    kRowGEQEnable = 13,
    kRowForcedFirst = 14,  // cleared by forced mode, in two runs
    kRowForcedSecond = 20,
    kRowForcedEnd = 26,
    kRowEffectThird = 26,
    kRowEffectFourth = 27,
    kRowListeningTest = 28,
};
constexpr int kParameterRowCount = 29;
static_assert(kRowGEQGain + kGEQBandCount == kRowGEQEnable,
              "the bands' rows end where the equaliser's switch has its own");

// The effect's rows hold these values while the effect is off, and 0 while it is on.
constexpr uint32_t kEffectOffFirstPair = 23;
constexpr uint32_t kEffectOffSecondPair = 31;

struct ParameterTableEntry {
    int32_t id;
    uint32_t size;   // bytes, at most kLargestPipeline
    int32_t offset;  // bytes from the start of the pipeline, as the library reports it
};

// Filled once, before the service is registered; read-only afterwards.
extern ParameterTableEntry g_parameterTable[kParameterRowCount];

// Asks the conversion library. A row with a size that no pipeline can hold is refused with a line
// in the log: it gets a size of 0 and an offset outside of any pipeline, so that the DSP refuses
// what is sent for it.
void fillParameterTable();

#endif  // ZYL_DRIVER_PARAMETER_TABLE_H
