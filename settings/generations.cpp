#include "settings/generations.h"

#include "driver/data_directory.h"
#include "driver/descriptor.h"
#include "settings/settings_struct_maldor.h"
#include "settings/settings_struct_torvane.h"

namespace {

template <typename Struct>
std::unique_ptr<zylSettingsStruct> make() {
    return std::make_unique<Struct>();
}

// A device has the first generation whose file can be read.
constexpr Generation kGenerations[] = {
        {ZYL_DATA_DIRECTORY "current_speaker_on", ZYL_DATA_DIRECTORY,
         make<zylSettingsStructMaldor>},
        {"/etc/zyl/speaker_0", "/etc/zyl/", make<zylSettingsStructTorvane>},
};

}  // namespace

const Generation* findGeneration() {
    for (const Generation& generation : kGenerations) {
        if (canBeRead(generation.defaultTuningFile)) return &generation;
    }
    return nullptr;
}
