// Where the parameters of the Quorin pipeline lie, as the conversion library reports them.

#ifndef ZYL_DRIVER_PARAMETER_TABLE_H
#define ZYL_DRIVER_PARAMETER_TABLE_H

#include <cstdint>

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

// What the effect's rows hold while the effect is off; while it is on, they hold 0.
constexpr uint32_t kEffectOffFirstPair = 23;
constexpr uint32_t kEffectOffSecondPair = 31;

struct ParameterTableEntry {
    int32_t id;
    uint32_t size;   // bytes
    int32_t offset;  // bytes from the start of the pipeline
};

// Filled once, before the service is registered; read-only afterwards.
extern ParameterTableEntry g_parameterTable[kParameterRowCount];

void fillParameterTable();

#endif  // ZYL_DRIVER_PARAMETER_TABLE_H
