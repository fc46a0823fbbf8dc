// The settings generations, and which of them this device has.

#ifndef ZYL_SETTINGS_GENERATIONS_H
#define ZYL_SETTINGS_GENERATIONS_H

#include <memory>

#include "settings/settings_struct.h"

struct Generation {
    // A device has the generation when this file can be read.
    const char* defaultTuningFile;
    const char* tuningDirectory;  // with a trailing slash
    std::unique_ptr<zylSettingsStruct> (*make)();
};

// The generation of this device, by the files that are there now; null when it has none. The result
// is a constant of the program.
const Generation* findGeneration();

#endif  // ZYL_SETTINGS_GENERATIONS_H
