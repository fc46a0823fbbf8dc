// The settings generations that there are, and the choice of the one that this device has.

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

// The generation of this device, by the files that are there now; null without one. The result is a
// constant of the program.
const Generation* findGeneration();

#endif  // ZYL_SETTINGS_GENERATIONS_H
