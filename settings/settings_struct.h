// The user's settings in memory and in the settings file.
//
// A settings struct does not guard its fields; the service calls it under its own locks. Setters
// change memory only, and SaveStruct writes the file. A refusal is logged under the
// generation's tag.

#ifndef ZYL_SETTINGS_SETTINGS_STRUCT_H
#define ZYL_SETTINGS_SETTINGS_STRUCT_H

#include <cstdint>
#include <string>

#include "settings/fair_lock.h"
#include "settings/replace_file.h"
#include "settings/settings_types.h"

class zylSettingsStructMaldor;

class zylSettingsStruct {
  public:
    zylSettingsStruct(const zylSettingsStruct&) = delete;
    zylSettingsStruct& operator=(const zylSettingsStruct&) = delete;
    virtual ~zylSettingsStruct() = default;

    // The version of the format that this build writes, and the version of the image in memory. The
    // latter is the file's once a file was loaded.
    uint32_t getCurrentVersion() const { return mTraits.currentVersion; }
    uint32_t getVersion() const { return mImage.version; }

    // Zero is off. Any other value is on, and is kept as it is.
    void setEnabled(uint32_t enabled) { mImage.enabled = enabled; }
    uint32_t getEnabled() const { return mImage.enabled; }

    // Whether the user picks a tuning by its number for each route.
    virtual bool hasTuningNumbers() const { return false; }
    // This object, as the one that takes tuning data and listening tests; null for a generation
    // that takes neither.
    virtual zylSettingsStructMaldor* maldor() { return nullptr; }

    virtual zylKwoErrors setTuning(zylRoute route, uint32_t tuning) = 0;
    // The tuning number, or a zylKwoErrors as an unsigned value.
    virtual uint32_t getTuning(zylRoute route) = 0;

    // The name of the route's tuning file, relative to the tuning directory. `on` is the state of
    // the effect that the file is wanted for; Torvane goes by the stored state instead. May change
    // the route's tuning when the file that it calls for does not exist on this device.
    virtual std::string getTuningFileName(zylRoute route, bool on) = 0;

    // Modes 1 to 3; others are refused.
    void setStereoMode(uint32_t mode);
    uint32_t getStereoMode() const { return mImage.stereoMode; }

    // Bands 0 to 9, gains 725 to 32767. Refused while the equaliser is off.
    zylKwoErrors setGEQGain(uint32_t band, uint16_t gain);
    // Sets `gain` to 0 for a band that does not exist.
    zylKwoErrors getGEQGain(uint32_t band, uint16_t& gain) const {
        if (band >= kGEQBandCount) return refuseToGetGEQGain(band, gain);
        gain = static_cast<uint16_t>(mImage.geqGain[band]);
        return kZylKwoOk;
    }

    void setGEQEnable(uint32_t enable) { mImage.geqEnable = enable; }
    uint32_t getGEQEnable() const { return mImage.geqEnable; }

    // Saves the settings file. A failure is logged; the file is then the old or the new one, whole,
    // unless it had to be written in place (see replace_file.h). Any thread may call it; the file
    // then holds what memory held at the last save. True when the service's directory was synced
    // with it, and so whatever else was renamed there.
    bool SaveStruct() ZYL_EXCLUDES(mSaveLock);
    // Reads the settings file. A missing file gives the defaults. A short file changes the fields
    // that it holds, and the others stay as they were. A file of a newer version is read like any
    // other.
    void LoadStruct();
    virtual void SetDefaults();

  protected:
    // The differences between the generations' files and log lines.
    struct Traits {
        const char* logTag;
        const char* className;
        uint32_t currentVersion;
        size_t imageSize;
        bool createsMissingFile;  // LoadStruct writes the defaults out
    };

    // `image` begins the generation's persisted image of `imageSize` bytes and lives as long as
    // this object. `traits` are a constant of the program. The caller sets the defaults.
    zylSettingsStruct(const Traits& traits, CommonSettingsImage& image)
        : mTraits(traits), mImage(image) {}

    // Logs "SIGNATURE: MESSAGE", where SIGNATURE is the reporting operation's, put together from
    // the parts around the class name.
    void logError(const char* returnType, const char* operation, const char* format, ...) const
            __attribute__((format(printf, 4, 5)));

  private:
    zylKwoErrors refuseToGetGEQGain(uint32_t band, uint16_t& gain) const;

    const Traits& mTraits;
    CommonSettingsImage& mImage;
    // Saves take turns: they share a temporary file.
    FairLock mSaveLock;
    SaveDirectory mDirectory ZYL_GUARDED_BY(mSaveLock);
};

#endif  // ZYL_SETTINGS_SETTINGS_STRUCT_H
