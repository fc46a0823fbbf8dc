#include "benchmarks/floor.h"

#include <binder/BpBinder.h>
#include <binder/IServiceManager.h>
#include <binder/Parcel.h>
#include <cutils/properties.h>
#include <fcntl.h>
#include <linux/android/binder.h>
#include <media/AudioSystem.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>

#include "benchmarks/bench.h"
#include "driver/parameter_table.h"
#include "interface/Izyl_kwo_service.h"
#include "lab/audio/audio_protocol.h"

using namespace android;

namespace {

constexpr char kDevice[] = "/dev/zyl_quorin";

constexpr char kDirectory[] = "/data/misc/zyl/";
constexpr char kSettings[] = "zyl_floor_settings";  // in that directory, as all that is replaced
constexpr char kTemporary[] = "zyl_floor.tmp";
constexpr size_t kTorvaneSettingsSize = 68;
constexpr size_t kMaldorSettingsSize = 348;
constexpr char kOptionalTuning[] = "/etc/zyl/lineout_3";
constexpr const char* kTorvaneTunings[kCacheBlockCount] = {"/etc/zyl/speaker_1", kOptionalTuning,
                                                           "/etc/zyl/bluetooth_0"};
constexpr const char* kMaldorTunings[kCacheBlockCount] = {"current_speaker_on", "current_lineout",
                                                          "current_bluetooth"};
constexpr size_t kTestStateOffset = 448;
constexpr uint32_t kTestApplied = 3;
constexpr int kAccessoryMode = 2;
constexpr uint32_t kMasks[kCacheBlockCount] = {0x00000002, 0x0002000C, 0x000003F0};
constexpr uint16_t kNeutral = 4096;
constexpr uint32_t kStereoMode = 2;
constexpr uint32_t kForcedStereoMode = 3;

constexpr char kAnnouncement[] = "ZYL_NEW_PARAM_READY=1";

constexpr std::array<uint16_t, kGEQBandCount> kNeutralGains = {
        kNeutral, kNeutral, kNeutral, kNeutral, kNeutral,
        kNeutral, kNeutral, kNeutral, kNeutral, kNeutral};

std::vector<uint8_t> bytesOf(const Parcel& parcel) {
    return {parcel.data(), parcel.data() + parcel.dataSize()};
}

}  // namespace

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

Floor::Floor()
    : mDirectory(open(kDirectory, O_RDONLY | O_DIRECTORY | O_CLOEXEC)),
      mSettingsSize(kTorvaneSettingsSize),
      mTunings(kTorvaneTunings),
      mImage(QUORIN_PIPELINE_ID, imageSize(), 0),
      mStereo(rowRecord(kRowStereoMode, 1, &kStereoMode, sizeof(kStereoMode))),
      mGain(rowRecord(kRowGEQGain + kBenchBand, 1, &kNeutral, sizeof(kNeutral))),
      mGains(rowRecord(kRowGEQGain, kGEQBandCount, kNeutralGains.data(), sizeof(kNeutralGains))) {
    must(mDirectory >= 0, kDirectory);
    for (int32_t row : {kRowEffectFirst, kRowEffectSecond, kRowEffectThird, kRowEffectFourth}) {
        mEffect.push_back(rowRecord(row, 1, "", 0));
    }
    mForced.push_back(rowRecord(kRowStereoMode, 1, &kForcedStereoMode, sizeof(kForcedStereoMode)));
    for (int32_t row = kRowForcedFirst; row < kRowForcedEnd; ++row) {
        mForced.push_back(rowRecord(row, 1, "", 0));
    }
    Parcel token;
    token.writeInterfaceToken(String16(kDescriptor));
    mToken = bytesOf(token);
    start();
    findAudioSystem();
}

// The files that a start looks at, then all blocks anew.
void Floor::start() {
    for (const char* path :
         {kMaldorTunings[0], "/etc/zyl/speaker_0", kSettings, "cache-mask.csv"}) {
        const int fd = openat(mDirectory, path, O_RDONLY | O_CLOEXEC);
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

// As AudioSystem does it.
void Floor::findAudioSystem() {
    const sp<IBinder> audio = defaultServiceManager()->checkService(audioServiceName());
    must(audio != nullptr, "no audio system");
    // For good.
    audio->incStrong(this);
    mAudio = static_cast<uint32_t>(audio->remoteBinder()->handle());
    Parcel data;
    data.writeInterfaceToken(audioDescriptor());
    data.writeString8(String8(kAnnouncement));
    mAnnouncement = bytesOf(data);
}

// At the start there is no way yet but the platform's.
void Floor::announce() {
    const int32_t status = servesBinder()
                                   ? callThroughBinder(mAudio, kAudioSetParameters, mAnnouncement)
                                   : AudioSystem::setParameters(0, String8(kAnnouncement));
    must(status == NO_ERROR, "audio");
}

void Floor::upload(Record& record, int block) {
    char value[PROPERTY_VALUE_MAX];
    property_get("zyl.kwo.log_time", value, nullptr);
    record.header()->mask = kMasks[block];
    request(kRequestWriteBlock, record.header());
    announce();
}

void Floor::uploadToBoth(Record& record) {
    upload(record, 1);
    upload(record, 2);
}

int Floor::openTuning(int block) {
    return openat(mDirectory, mTunings[block], O_RDONLY | O_CLOEXEC);
}

void Floor::readTuning(int block) {
    const int fd = openTuning(block);
    must(read(fd, mImage.payload(), mImage.size()) == static_cast<ssize_t>(mImage.size()),
         mTunings[block]);
    close(fd);
}

void Floor::rebuild(int block) {
    // Whether the optional tuning is there.
    if (mTunings[block] == kOptionalTuning) close(openTuning(block));
    readTuning(block);
    upload(mImage, block);
}

void Floor::replace(const char* name, const void* bytes, size_t size) {
    const int fd = openat(mDirectory, kTemporary, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    must(write(fd, bytes, size) == static_cast<ssize_t>(size) && fdatasync(fd) == 0, "write");
    close(fd);
    must(renameat(mDirectory, kTemporary, mDirectory, name) == 0, "rename");
    must(fsync(mDirectory) == 0, kDirectory);
}

void Floor::save() {
    replace(kSettings, mSettings.data(), mSettingsSize);
}

void Floor::modifyRecord(int block, Modify modify) {
    readTuning(block);
    must((this->*modify)(reinterpret_cast<_zylZylcsQuorinPipeLine*>(mImage.payload())) == 0,
         "conversion");
    memcpy(mImage.payload() + kTestStateOffset, &kTestApplied, sizeof(kTestApplied));
    replace(mTunings[block], mImage.payload(), mImage.size());
}

int32_t Floor::applyTest(_zylZylcsQuorinPipeLine* record) {
    return ZYL_Convert_API_ModifyQuorinPipelineWithListeningTest(
            kBenchTest[0], kBenchTest[1], kBenchTest[2], kBenchTest[3], record);
}

// The data are a length and as many bytes, behind the block; then comes the work area, which is the
// library's to write to, so not where it arrived.
int32_t Floor::applyAccessory(_zylZylcsQuorinPipeLine* record) {
    const int32_t size = mArguments[1];
    const int32_t workSize = mArguments[2 + (size + 3) / 4];
    must(workSize >= 0 && static_cast<size_t>(workSize) <= sizeof(mWork), "the work area");
    const int32_t result = ZYL_Convert_API_ModifyQuorinPipelineWithAccessoryZylcsTuning(
            kAccessoryMode, kSampleRate48000, reinterpret_cast<const uint8_t*>(mArguments + 2),
            size, mWork, workSize, record);
    return result != 0 ? result : applyTest(record);
}

void Floor::accessory() {
    modifyRecord(mArguments[0], &Floor::applyAccessory);
    rebuild(mArguments[0]);
    announce();
    save();
}

void Floor::listeningTest() {
    for (int block : {1, 2}) modifyRecord(block, &Floor::applyTest);
    for (int block : {1, 2}) {
        rebuild(block);
        announce();
    }
    save();
}

void Floor::enable() {
    save();
    rebuild(0);
    for (Record& record : mEffect) uploadToBoth(record);
    announce();
}

void Floor::setStereoMode() {
    save();
    uploadToBoth(mStereo);
    announce();
}

void Floor::sendGains(Record& record) {
    save();
    for (int block : {2, 0, 1}) upload(record, block);
    announce();
}

void Floor::reload() {
    for (int block = 0; block < kCacheBlockCount; ++block) rebuild(block);
    if (mArguments[0] != 0) {
        for (Record& record : mForced) uploadToBoth(record);
    }
    announce();
}

void Floor::share(int fd) {
    const auto* object = reinterpret_cast<const ::binder_fd_object*>(mArguments);
    const auto length = static_cast<size_t>(*reinterpret_cast<const int32_t*>(object + 1));
    mRegion = mmap(nullptr, length, PROT_READ | PROT_WRITE, MAP_SHARED, fd, 0);
    must(mRegion != MAP_FAILED, "mmap");
    close(fd);
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
