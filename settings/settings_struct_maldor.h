// The generation whose tunings are pipeline images under /data/misc/zyl/, one for each route and
// state, that tuning data from clients is folded into.

#ifndef ZYL_SETTINGS_SETTINGS_STRUCT_MALDOR_H
#define ZYL_SETTINGS_SETTINGS_STRUCT_MALDOR_H

#include "settings/settings_struct.h"

class zylSettingsStructMaldor : public zylSettingsStruct {
  public:
    zylSettingsStructMaldor();

    // There are no tuning numbers: both are refused with kSettingsUnsupported.
    zylKwoErrors setTuning(zylRoute route, uint32_t tuning) override;
    uint32_t getTuning(zylRoute route) override;

    // `route` is one of the three.
    std::string getTuningFileName(zylRoute route, bool on) override;

    void SetDefaults() override;

  private:
    static const Generation kGeneration;

    MaldorSettingsImage mImage;
};

#endif  // ZYL_SETTINGS_SETTINGS_STRUCT_MALDOR_H
