// The generation whose tunings are pipeline images under /data/misc/zyl/, one for each route and
// state, that tuning data from clients is folded into.
//
// The operations below the virtual ones run without the service's lock. Changes of records take
// turns, so none is lost; what the operations remember here they write as plain fields, and the
// last one wins.

#ifndef ZYL_SETTINGS_SETTINGS_STRUCT_MALDOR_H
#define ZYL_SETTINGS_SETTINGS_STRUCT_MALDOR_H

#include <functional>
#include <memory>
#include <mutex>

#include "driver/zyl_convert_api.h"
#include "settings/settings_struct.h"

// Tuning data and the conversion library's work area, as a client sent them. Both are only used
// during a call.
struct ZylcsData {
    const uint8_t* bytes;
    int32_t size;
    uint8_t* work;
    int32_t workSize;
};

class zylSettingsStructMaldor : public zylSettingsStruct {
  public:
    // What tuning data was applied to.
    enum class Identifier {
        kLineoutAccessory,
        kBluetoothAccessory,
        kMultiChannelRoom,
        kLineoutStereoRoom,
        kBluetoothStereoRoom,
        kSpeakerOn,
        kSpeakerOff,
    };

    zylSettingsStructMaldor();

    // There are no tuning numbers: both are refused with kSettingsUnsupported.
    zylKwoErrors setTuning(zylRoute route, uint32_t tuning) override;
    uint32_t getTuning(zylRoute route) override;

    // `route` is one of the three.
    std::string getTuningFileName(zylRoute route, bool on) override;

    void SetDefaults() override;

    // Keeps the first 36 characters.
    void setIdentifier(Identifier which, const std::string& text);
    std::string getIdentifier(Identifier which) const;

    void setListeningTestValues(float a, float b, float c, float d);
    void getListeningTestValues(float* a, float* b, float* c, float* d) const;

    // Fold tuning data, or the values of a listening test, into the records that they concern. A
    // failure leaves the record that it struck, and those after it, as they were. A record whose
    // file cannot be opened for writing counts as saved.

    // Lineout or bluetooth; a listening test that was taken is applied on top.
    zylKwoErrors applyAccessoryZylcsTuning(zylRoute route, const ZylcsData& zylcs);
    // The record for the effect being on, or off.
    zylKwoErrors applySpeakerZylcsTuning(bool on, const ZylcsData& zylcs);
    // Lineout, then bluetooth. `route` is the one that the room was chosen for.
    zylKwoErrors applyZylcsStereoRooms(int32_t route, const ZylcsData& zylcs);
    zylKwoErrors applyZylcsMultiChannelRoom(const ZylcsData& zylcs);
    zylKwoErrors applyListeningTest(float a, float b, float c, float d);

    // Forgets the listening test, here and in the route's record. A record that cannot be read or
    // written is left as it is.
    void resetListeningTest(zylRoute route);

  private:
    using Record = std::unique_ptr<uint8_t[]>;
    // Changes a record in place and returns the conversion library's result.
    using Modify = std::function<int32_t(_zylZylcsQuorinPipeLine*)>;
    using ModifyAtRate =
            std::function<int32_t(_zylZylcsQuorinSampleRate, _zylZylcsQuorinPipeLine*)>;

    static const Generation kGeneration;

    zylKwoErrors loadQuorinPipeline(const std::string& path, Record* record);
    zylKwoErrors saveQuorinPipeline(const std::string& path, const Record& record);
    zylKwoErrors modifyRecord(const std::string& name, const Modify& modify);
    zylKwoErrors modifyLineoutAndBluetooth(const ModifyAtRate& modify);

    char* field(Identifier which);

    // Held from a record's loading to its saving, the conversion library's work in between.
    std::mutex mRecordLock;
    MaldorSettingsImage mImage;
};

#endif  // ZYL_SETTINGS_SETTINGS_STRUCT_MALDOR_H
