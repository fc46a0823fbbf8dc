// The work of zyl_floor, on buffers and records that are ready beforehand. It answers for the
// states only that zyl_bench has the service in: the effect and the equaliser on, stereo mode 2,
// neutral gains, no forced mode but by the call that sets it, and on Torvane the default tunings,
// on Maldor a listening test. For one client at a time, but for what asks: buffers and the
// temporary file are there once.

#ifndef ZYL_BENCH_FLOOR_H
#define ZYL_BENCH_FLOOR_H

#include <array>
#include <cstdint>
#include <vector>

#include "benchmarks/floor_binder.h"
#include "driver/zyl_convert_api.h"
#include "driver/zyl_quorin_ioctl.h"

// A header and its payload, as they go to the DSP.
class Record {
  public:
    Record(int32_t id, uint32_t size, int32_t offset)
        : mWords(sizeof(ParamBlockHeader) / 4 + (size + 3) / 4) {
        *header() = {static_cast<uint32_t>(id), size, static_cast<uint32_t>(offset), 0};
    }

    ParamBlockHeader* header() { return reinterpret_cast<ParamBlockHeader*>(mWords.data()); }
    uint8_t* payload() { return reinterpret_cast<uint8_t*>(header() + 1); }
    uint32_t size() { return header()->size; }

  private:
    std::vector<uint32_t> mWords;
};

class Floor {
  public:
    Floor();
    Reply answer(const Request& request);

  private:
    static constexpr size_t kLargestSettings = 348;
    using Modify = int32_t (Floor::*)(_zylZylcsQuorinPipeLine* record);

    static uint32_t imageSize();
    static Record rowRecord(int32_t row, uint32_t rows, const void* value, size_t valueSize);
    void start();
    void request(QuorinRequest number, void* record);
    void upload(Record& record, int block);
    void uploadToBoth(Record& record);
    void findAudioSystem();
    void announce();
    int openTuning(int block);
    void readTuning(int block);
    void rebuild(int block);
    void replace(const char* name, const void* bytes, size_t size);
    void save();
    void modifyRecord(int block, Modify modify);
    int32_t applyTest(_zylZylcsQuorinPipeLine* record);
    int32_t applyAccessory(_zylZylcsQuorinPipeLine* record);
    void accessory();
    void listeningTest();
    void enable();
    void setStereoMode();
    void sendGains(Record& record);
    void reload();
    void share(int fd);
    void fetch();
    void push();

    std::vector<uint8_t> mToken;
    std::vector<uint8_t> mAnnouncement;
    uint32_t mAudio = 0;
    const int mDirectory;
    std::array<uint8_t, kLargestSettings> mSettings = {};
    size_t mSettingsSize;
    const char* const* mTunings;
    Record mImage;
    Record mStereo;
    Record mGain;
    Record mGains;
    std::vector<Record> mEffect;
    std::vector<Record> mForced;
    uint8_t mWork[1 << 16];
    void* mRegion = nullptr;
    const int32_t* mArguments = nullptr;  // of the call that is being answered
};

#endif  // ZYL_BENCH_FLOOR_H
