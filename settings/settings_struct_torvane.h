// The generation in which the user picks a tuning number for each route.

#ifndef ZYL_SETTINGS_SETTINGS_STRUCT_TORVANE_H
#define ZYL_SETTINGS_SETTINGS_STRUCT_TORVANE_H

#include "settings/settings_struct.h"

class zylSettingsStructTorvane : public zylSettingsStruct {
  public:
    zylSettingsStructTorvane();

    bool hasTuningNumbers() const override { return true; }

    // Any number is stored; it becomes part of a file name.
    zylKwoErrors setTuning(zylRoute route, uint32_t tuning) override;
    uint32_t getTuning(zylRoute route) override;

    // Empty for a route that does not exist. Not every device has a file for lineout's tuning 3;
    // where it is missing, lineout's tuning becomes 1.
    std::string getTuningFileName(zylRoute route, bool on) override;

  private:
    static const Traits kTraits;

    CommonSettingsImage mImage;
};

#endif  // ZYL_SETTINGS_SETTINGS_STRUCT_TORVANE_H
