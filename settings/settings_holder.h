// Owns the settings struct of the device's generation and lays its settings over a pipeline image.
// It has no lock of its own.

#ifndef ZYL_SETTINGS_SETTINGS_HOLDER_H
#define ZYL_SETTINGS_SETTINGS_HOLDER_H

#include <memory>

#include "driver/pipeline.h"
#include "settings/generations.h"
#include "settings/settings_struct.h"

class zylSettingsHolder {
  public:
    // Begins with the default settings of the generation.
    explicit zylSettingsHolder(const Generation& generation);

    uint32_t getSettingsVersion() const { return mSettings->getCurrentVersion(); }
    void loadSettings() { mSettings->LoadStruct(); }
    void saveSettings() { mSettings->SaveStruct(); }

    // Writes the user's settings into an image that was just loaded for `block`. The effect's own
    // switch and the stereo mode do not reach block 0, whose tuning files carry them. Always 0.
    int32_t applySettingsToPipeline(zylQuorinPipelineCtrl& ctrl, int32_t block) const;

    // The service asks these about the generation.
    const char* tuningDirectory() const { return mGeneration.tuningDirectory; }
    bool hasTuningNumbers() const { return mSettings->hasTuningNumbers(); }
    // The object for tuning data and listening tests, which stays the holder's; null for a
    // generation that takes neither.
    zylSettingsStructMaldor* maldor() const { return mSettings->maldor(); }

    // Stays the holder's.
    zylSettingsStruct* getSettingsStruct() const { return mSettings.get(); }

  private:
    void applyEffect(zylQuorinPipelineCtrl& ctrl) const;
    void applyEqualiser(zylQuorinPipelineCtrl& ctrl) const;

    const Generation& mGeneration;
    const std::unique_ptr<zylSettingsStruct> mSettings;
};

#endif  // ZYL_SETTINGS_SETTINGS_HOLDER_H
