// The generation whose tunings are records. A record is a saved pipeline image in the service's
// directory: two are the speaker's, for the effect being on and off, one is lineout's and one is
// bluetooth's. Tuning data and listening tests of clients change them.
//
// Changing records and remembering the name, or the test, is one turn, under gRecordLock. The
// getters of what is remembered take no lock: a name that is just being replaced may come out as a
// mixture.

#ifndef ZYL_SETTINGS_SETTINGS_STRUCT_MALDOR_H
#define ZYL_SETTINGS_SETTINGS_STRUCT_MALDOR_H

#include <functional>
#include <memory>
#include <string>

#include "driver/pipeline.h"
#include "settings/settings_struct.h"

// Held from before a record is changed, by tuning data or a listening test, until that is
// remembered, so that two changes never mix. The conversion library works in this time. This lock
// is the outermost: nobody waits for a conversion with another lock held.
extern FairLock gRecordLock;

// Tuning data and the conversion library's work area, as a client sent them, with their sizes in
// bytes. Both are only used during a call.
struct ZylcsData {
    const uint8_t* bytes;
    int32_t size;
    uint8_t* work;
    int32_t workSize;
};

class zylSettingsStructMaldor : public zylSettingsStruct {
  public:
    // The names that are remembered, by what the tuning data was for.
    enum class TuningName {
        kLineoutAccessory,
        kBluetoothAccessory,
        kMultiChannelRoom,
        kLineoutStereoRoom,
        kBluetoothStereoRoom,
        kSpeakerOn,
        kSpeakerOff,
    };

    zylSettingsStructMaldor();

    zylSettingsStructMaldor* maldor() override { return this; }

    // There are no tuning numbers: both are refused with kZylKwoUnsupported.
    zylKwoErrors setTuning(zylRoute route, uint32_t tuning) override;
    uint32_t getTuning(zylRoute route) override;

    // `route` is one of the three.
    std::string getTuningFileName(zylRoute route, bool on) override;

    void SetDefaults() override;

    // Keeps the first 36 characters.
    void setName(TuningName which, const std::string& text) ZYL_REQUIRES(gRecordLock);
    std::string getName(TuningName which) const;

    void setListeningTestValues(float a, float b, float c, float d) ZYL_REQUIRES(gRecordLock);
    void getListeningTestValues(float* a, float* b, float* c, float* d) const;

    // Have the library change the records concerned, and save them. A failure leaves the records
    // after the one for which it came as they were, and that one old or new (see replace_file.h). A
    // record whose file cannot be opened for writing counts as saved. When the library reports a
    // pipeline that is larger than a record, the change is refused with a line in the log.

    // Lineout or bluetooth, others are refused. A listening test that was taken is applied again.
    zylKwoErrors applyAccessoryZylcsTuning(zylRoute route, const ZylcsData& zylcs)
            ZYL_REQUIRES(gRecordLock);
    // The speaker's record for the effect being on, or off.
    zylKwoErrors applySpeakerZylcsTuning(bool on, const ZylcsData& zylcs) ZYL_REQUIRES(gRecordLock);
    // Lineout, then bluetooth. `route` is the one that the room was chosen for.
    zylKwoErrors applyZylcsStereoRooms(int32_t route, const ZylcsData& zylcs)
            ZYL_REQUIRES(gRecordLock);
    zylKwoErrors applyZylcsMultiChannelRoom(const ZylcsData& zylcs) ZYL_REQUIRES(gRecordLock);
    zylKwoErrors applyListeningTest(float a, float b, float c, float d) ZYL_REQUIRES(gRecordLock);

    // Forgets the listening test, here and in the route's record. A record that cannot be read or
    // written is left as it is. It lasts from the next saveResets on.
    void resetListeningTest(zylRoute route) ZYL_REQUIRES(gRecordLock);
    // Saves the settings, and has the records that were reset last.
    void saveResets() ZYL_REQUIRES(gRecordLock) {
        if (!SaveStruct()) mRecordDirectory.sync();
    }

  private:
    // The bytes of a record.
    using Record = ImageMemory;
    // Changes a record in place and returns the conversion library's result.
    using Modify = std::function<int32_t(_zylZylcsQuorinPipeLine*)>;
    using ModifyAtRate =
            std::function<int32_t(_zylZylcsQuorinSampleRate, _zylZylcsQuorinPipeLine*)>;

    static const Traits kTraits;

    zylKwoErrors loadQuorinPipeline(const std::string& path, Record& record);
    zylKwoErrors saveQuorinPipeline(const std::string& file, const Record& record,
                                    DirectorySync sync) ZYL_REQUIRES(gRecordLock);
    zylKwoErrors modifyRecord(const std::string& file, const Modify& modify,
                              DirectorySync sync = DirectorySync::kNow) ZYL_REQUIRES(gRecordLock);
    zylKwoErrors modifyLineoutAndBluetooth(const ModifyAtRate& modify) ZYL_REQUIRES(gRecordLock);

    char* imageBytes() { return reinterpret_cast<char*>(&mImage); }
    const char* imageBytes() const { return reinterpret_cast<const char*>(&mImage); }

    MaldorSettingsImage mImage;
    SaveDirectory mRecordDirectory ZYL_GUARDED_BY(gRecordLock);
};

#endif  // ZYL_SETTINGS_SETTINGS_STRUCT_MALDOR_H
