// audiod: the audio system of the emulated phone. It journals what is set and asked, and
// answers from a table that audioctl changes.

#include <binder/IPCThreadState.h>
#include <binder/IServiceManager.h>
#include <binder/Parcel.h>
#include <binder/PermissionCache.h>
#include <binder/ProcessState.h>

#include <map>
#include <mutex>
#include <string>

#include "lab/audio/audio_protocol.h"
#include "lab/journal/journal.h"

using namespace android;

namespace {

class AudioDaemon : public BBinder {
  public:
    const String16& getInterfaceDescriptor() const override { return mDescriptor; }

    status_t onTransact(uint32_t code, const Parcel& data, Parcel* reply, uint32_t flags) override {
        if (code < kAudioSetParameters || code > kAudioSetReply) {
            return BBinder::onTransact(code, data, reply, flags);
        }
        if (!data.enforceInterface(mDescriptor)) return PERMISSION_DENIED;
        const std::string text = data.readString8().string();
        const std::lock_guard<std::mutex> lock(mLock);
        switch (code) {
            case kAudioSetParameters:
                if (!PermissionCache::checkCallingPermission(mSettingsPermission)) {
                    return reply->writeInt32(PERMISSION_DENIED);
                }
                journal("audio set %s", text.c_str());
                return reply->writeInt32(NO_ERROR);
            case kAudioGetParameters:
                journal("audio get %s", text.c_str());
                return reply->writeString8(replyTo(text));
            default: mReplies[text] = data.readString8().string(); return NO_ERROR;
        }
    }

  private:
    String8 replyTo(const std::string& key) const {
        const auto found = mReplies.find(key);
        return found == mReplies.end() ? String8() : String8(found->second.c_str());
    }

    const String16 mDescriptor = audioDescriptor();
    const String16 mSettingsPermission{"android.permission.MODIFY_AUDIO_SETTINGS"};
    std::mutex mLock;
    std::map<std::string, std::string> mReplies = {
            {"QuorinVersion", "QuorinVersion=2.4.1"},
            {"QuorinDescription", "QuorinDescription=Headphone and speaker effect of this phone"},
            {"QuorinPlatformVersion", "QuorinPlatformVersion=7"},
    };
};

}  // namespace

int main() {
    ProcessState::self()->startThreadPool();
    if (defaultServiceManager()->addService(audioServiceName(), new AudioDaemon) != NO_ERROR) {
        return 1;
    }
    IPCThreadState::self()->joinThreadPool();
}
