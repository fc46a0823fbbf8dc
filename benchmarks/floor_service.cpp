// zyl_floor: what no service that does this work can do without, and nothing else. For the same
// calls it gives the same replies, makes the same requests to the DSP and the same calls of the
// audio system and the file system, with images and records that are ready beforehand: it has no
// settings, no choices and no lock, and looks at no argument. What the service takes longer than
// this is its own.
//
// It answers for the states only that zyl_bench has the service in: the effect and the equaliser
// on, stereo mode 2, neutral gains, no forced mode, and on Torvane the default tunings, on Maldor
// a listening test. For one client at a time, but for what asks: buffers and the temporary file are
// there once.

#include <binder/IPCThreadState.h>
#include <binder/IServiceManager.h>
#include <binder/Parcel.h>
#include <binder/ProcessState.h>
#include <cutils/properties.h>
#include <fcntl.h>
#include <media/AudioSystem.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/uio.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "benchmarks/bench.h"
#include "driver/parameter_table.h"
#include "driver/zyl_convert_api.h"
#include "driver/zyl_quorin_ioctl.h"
#include "interface/Izyl_kwo_service.h"

using namespace android;

namespace {

constexpr char kDevice[] = "/dev/zyl_quorin";

constexpr char kDirectory[] = "/data/misc/zyl/";
constexpr char kSettings[] = "/data/misc/zyl/zyl_floor_settings";
constexpr size_t kTorvaneSettingsSize = 68;
constexpr size_t kMaldorSettingsSize = 348;
constexpr char kOptionalTuning[] = "/etc/zyl/lineout_3";
constexpr const char* kTorvaneTunings[kCacheBlockCount] = {"/etc/zyl/speaker_1", kOptionalTuning,
                                                           "/etc/zyl/bluetooth_0"};
constexpr const char* kMaldorTunings[kCacheBlockCount] = {"/data/misc/zyl/current_speaker_on",
                                                          "/data/misc/zyl/current_lineout",
                                                          "/data/misc/zyl/current_bluetooth"};
constexpr size_t kTestStateOffset = 448;
constexpr uint32_t kTestApplied = 3;
constexpr int kAccessoryMode = 2;
constexpr uint32_t kMasks[kCacheBlockCount] = {0x00000002, 0x0002000C, 0x000003F0};
constexpr uint16_t kNeutral = 4096;
constexpr uint32_t kStereoMode = 2;
constexpr int32_t kQuietLevel = -80000;

// A floor that fails is cheap, and no floor.
void must(bool succeeded, const char* what) {
    if (succeeded) return;
    perror(what);
    abort();
}

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

class Floor : public BBinder {
  public:
    Floor();
    const String16& getInterfaceDescriptor() const override { return mDescriptor; }
    status_t onTransact(uint32_t code, const Parcel& data, Parcel* reply, uint32_t flags) override;

  private:
    static uint32_t imageSize();
    static Record rowRecord(int32_t row, uint32_t rows, const void* value, size_t valueSize);
    void start();
    void request(QuorinRequest number, void* record);
    void upload(Record& record, int block);
    void announce() { must(AudioSystem::setParameters(0, mAnnouncement) == NO_ERROR, "audio"); }
    void rebuild(int block);
    void replace(const std::string& path, const void* bytes, size_t size);
    void save() { replace(kSettings, mSettings.data(), mSettingsSize); }
    void modifyRecord(int block, const std::function<int32_t(_zylZylcsQuorinPipeLine*)>& modify);
    void accessory(const Parcel& data);
    void listeningTest();
    void enable();
    void sendGains(Record& record);
    void share(const Parcel& data);
    void fetch();
    void push();

    const String16 mDescriptor{kDescriptor};
    const String8 mAnnouncement{"ZYL_NEW_PARAM_READY=1"};
    std::array<uint8_t, kMaldorSettingsSize> mSettings = {};
    size_t mSettingsSize = kTorvaneSettingsSize;
    const char* const* mTunings = kTorvaneTunings;
    Record mImage;
    Record mStereo;
    Record mGain;
    Record mGains;
    std::vector<Record> mEffect;
    void* mRegion = nullptr;
};

uint32_t Floor::imageSize() {
    _zylZylcsQuorinPipeLineInfo info = {};
    ZYL_Convert_API_GetPipelineSize(&info);
    return info.words[0];
}

Record Floor::rowRecord(int32_t row, uint32_t rows, const void* value, size_t valueSize) {
    ParameterTableEntry entry = {};
    ZYL_Convert_API_GetParameterTableInfo(static_cast<_zylQuorinPipelineParamEnum>(row), &entry.id,
                                          &entry.size, &entry.offset);
    Record record(entry.id, rows * entry.size, entry.offset);
    memcpy(record.payload(), value, std::min<size_t>(valueSize, record.size()));
    return record;
}

constexpr std::array<uint16_t, kGEQBandCount> kNeutralGains = {
        kNeutral, kNeutral, kNeutral, kNeutral, kNeutral,
        kNeutral, kNeutral, kNeutral, kNeutral, kNeutral};

Floor::Floor()
    : mImage(QUORIN_PIPELINE_ID, imageSize(), 0),
      mStereo(rowRecord(kRowStereoMode, 1, &kStereoMode, sizeof(kStereoMode))),
      mGain(rowRecord(kRowGEQGain + kBenchBand, 1, &kNeutral, sizeof(kNeutral))),
      mGains(rowRecord(kRowGEQGain, kGEQBandCount, kNeutralGains.data(), sizeof(kNeutralGains))) {
    for (int32_t row : {kRowEffectFirst, kRowEffectSecond, kRowEffectThird, kRowEffectFourth}) {
        mEffect.push_back(rowRecord(row, 1, "", 0));
    }
    start();
}

// The files that a start looks at, then all blocks anew.
void Floor::start() {
    for (const char* path :
         {kMaldorTunings[0], "/etc/zyl/speaker_0", kSettings, "/data/misc/zyl/cache-mask.csv"}) {
        const int fd = open(path, O_RDONLY | O_CLOEXEC);
        if (fd < 0) continue;
        if (path == kSettings) must(read(fd, mSettings.data(), mSettingsSize) >= 0, "read");
        if (path == kMaldorTunings[0]) {
            mTunings = kMaldorTunings;
            mSettingsSize = kMaldorSettingsSize;
        }
        close(fd);
    }
    _zylZylcsQuorinPipeLineInfo info = {};
    ZYL_Convert_API_GetPipelineSize(&info);
    const uint32_t* word = info.words;
    uint32_t cacheSize = kCacheBlockCount * word[0];
    request(kRequestSetCacheSize, &cacheSize);
    for (uint32_t i = 0; i < kCacheBlockCount; ++i) {
        CacheBlockConfig config = {
                i, kMasks[i], word[0] * i, QUORIN_PIPELINE_ID,     word[1], word[4],
                0, word[3],   word[6],     QUORIN_PIPELINE_AUX_ID, word[5], word[8],
                0, word[7]};
        request(kRequestConfigureBlock, &config);
    }
    for (int block = 0; block < kCacheBlockCount; ++block) rebuild(block);
    announce();
}

void Floor::request(QuorinRequest number, void* record) {
    const int fd = open(kDevice, O_RDWR);
    must(fd >= 0 && ioctl(fd, number, record) == 0, kDevice);
    close(fd);
}

void Floor::upload(Record& record, int block) {
    char value[PROPERTY_VALUE_MAX];
    property_get("zyl.kwo.log_time", value, nullptr);
    record.header()->mask = kMasks[block];
    request(kRequestWriteBlock, record.header());
    announce();
}

void Floor::rebuild(int block) {
    // Whether the optional tuning is there.
    if (mTunings[block] == kOptionalTuning) close(open(kOptionalTuning, O_RDONLY | O_CLOEXEC));
    const int fd = open(mTunings[block], O_RDONLY | O_CLOEXEC);
    must(read(fd, mImage.payload(), mImage.size()) == static_cast<ssize_t>(mImage.size()),
         mTunings[block]);
    close(fd);
    upload(mImage, block);
}

void Floor::replace(const std::string& path, const void* bytes, size_t size) {
    const std::string temporary = path + ".tmp";
    const int fd = open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    must(write(fd, bytes, size) == static_cast<ssize_t>(size) && fdatasync(fd) == 0, "write");
    close(fd);
    must(rename(temporary.c_str(), path.c_str()) == 0, "rename");
    const int directory = open(kDirectory, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    must(fsync(directory) == 0, kDirectory);
    close(directory);
}

void Floor::modifyRecord(int block,
                         const std::function<int32_t(_zylZylcsQuorinPipeLine*)>& modify) {
    const int fd = open(mTunings[block], O_RDONLY | O_CLOEXEC);
    must(read(fd, mImage.payload(), mImage.size()) == static_cast<ssize_t>(mImage.size()), "read");
    close(fd);
    must(modify(reinterpret_cast<_zylZylcsQuorinPipeLine*>(mImage.payload())) == 0, "conversion");
    memcpy(mImage.payload() + kTestStateOffset, &kTestApplied, sizeof(kTestApplied));
    replace(mTunings[block], mImage.payload(), mImage.size());
}

int32_t applyTest(_zylZylcsQuorinPipeLine* record) {
    return ZYL_Convert_API_ModifyQuorinPipelineWithListeningTest(
            kBenchTest[0], kBenchTest[1], kBenchTest[2], kBenchTest[3], record);
}

// The work area is the library's to write to, so not where it arrived.
void Floor::accessory(const Parcel& data) {
    const int32_t block = data.readInt32();
    const int32_t size = data.readInt32();
    const void* bytes = data.readInplace(static_cast<size_t>(size));
    const int32_t workSize = data.readInt32();
    std::vector<uint8_t> work(static_cast<size_t>(workSize));
    modifyRecord(block, [&](_zylZylcsQuorinPipeLine* record) {
        const int32_t result = ZYL_Convert_API_ModifyQuorinPipelineWithAccessoryZylcsTuning(
                kAccessoryMode, kSampleRate48000, static_cast<const uint8_t*>(bytes), size,
                work.data(), workSize, record);
        return result != 0 ? result : applyTest(record);
    });
    rebuild(block);
    announce();
    save();
}

void Floor::listeningTest() {
    for (int block : {1, 2}) modifyRecord(block, applyTest);
    for (int block : {1, 2}) {
        rebuild(block);
        announce();
    }
    save();
}

void Floor::enable() {
    save();
    rebuild(0);
    for (Record& record : mEffect) {
        upload(record, 1);
        upload(record, 2);
    }
    announce();
}

void Floor::sendGains(Record& record) {
    save();
    for (int block : {2, 0, 1}) upload(record, block);
    announce();
}

void Floor::share(const Parcel& data) {
    const int fd = data.readFileDescriptor();
    const auto length = static_cast<size_t>(data.readInt32());
    mRegion = mmap(nullptr, length, PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
    must(mRegion != MAP_FAILED, "mmap");
}

void Floor::fetch() {
    mImage.header()->mask = kMasks[kBenchBlock];
    request(kRequestReadBlock, mImage.header());
    const iovec own = {mImage.payload(), mImage.size()};
    const iovec shared = {mRegion, mImage.size()};
    must(process_vm_writev(getpid(), &own, 1, &shared, 1, 0) > 0, "process_vm_writev");
}

void Floor::push() {
    const iovec own = {mImage.payload(), mImage.size()};
    const iovec shared = {mRegion, mImage.size()};
    must(process_vm_readv(getpid(), &own, 1, &shared, 1, 0) > 0, "process_vm_readv");
    upload(mImage, kBenchBlock);
    announce();
}

status_t Floor::onTransact(uint32_t code, const Parcel& data, Parcel* reply, uint32_t flags) {
    if (!data.checkInterface(this)) return PERMISSION_DENIED;
    switch (code) {
        case Izyl_kwo_service::GET_STEREO_MODE:
            reply->writeInt32(0);
            return reply->writeInt32(kStereoMode);
        case Izyl_kwo_service::GET_GEQ_GAIN:
            reply->writeInt32(0);
            return reply->writeInt32(kNeutral);
        case Izyl_kwo_service::GET_GEQ_GAIN_ALL:
            reply->writeInt32(0);
            for (int i = 0; i < kGEQBandCount; ++i) reply->writeInt32(kNeutral);
            return NO_ERROR;
        case Izyl_kwo_service::GET_DB_LEVELS:
            reply->writeInt32(0);
            for (int i = 0; i < kDbLevelCount; ++i) reply->writeInt32(kQuietLevel);
            return NO_ERROR;
        case Izyl_kwo_service::SET_ENABLED: enable(); return NO_ERROR;
        case Izyl_kwo_service::SET_STEREO_MODE:
            save();
            upload(mStereo, 1);
            upload(mStereo, 2);
            announce();
            break;
        case Izyl_kwo_service::SET_TUNING:
            save();
            rebuild(0);
            break;
        case Izyl_kwo_service::SET_GEQ_GAIN: sendGains(mGain); break;
        case Izyl_kwo_service::SET_GEQ_GAIN_ALL: sendGains(mGains); break;
        case Izyl_kwo_service::SET_RELOAD_FLAG:
            for (int block = 0; block < kCacheBlockCount; ++block) rebuild(block);
            announce();
            break;
        case Izyl_kwo_service::SET_LISTENING_TEST_RESULT: listeningTest(); break;
        case Izyl_kwo_service::SET_ACCESSORY_ZYLCS_TUNING: accessory(data); break;
        case Izyl_kwo_service::SET_FILE_DESCRIPTOR: share(data); break;
        case Izyl_kwo_service::FETCH_CACHE_BLOCK: fetch(); break;
        case Izyl_kwo_service::PUSH_CACHE_BLOCK: push(); break;
        default: return BBinder::onTransact(code, data, reply, flags);
    }
    return reply->writeInt32(0);
}

}  // namespace

// On the same threads as the service.
int main() {
    must(defaultServiceManager()->addService(String16(kFloorName), new Floor, false) == NO_ERROR,
         "addService");
    ProcessState::self()->startThreadPool();
    IPCThreadState::self()->joinThreadPool(true);
    return 0;
}
