#include <binder/IServiceManager.h>
#include <binder/Parcel.h>
#include <media/AudioSystem.h>

#include <mutex>

#include "lab/audio/audio_protocol.h"

namespace android {

namespace {

constexpr audio_io_handle_t kGlobalSpace = 0;

std::mutex gLock;
sp<IBinder> gDaemon;

// Looked up once, and again after the daemon died.
sp<IBinder> daemon(const sp<IBinder>& dead) {
    const std::lock_guard<std::mutex> lock(gLock);
    if (gDaemon == nullptr || gDaemon == dead) {
        gDaemon = defaultServiceManager()->checkService(audioServiceName());
    }
    return gDaemon;
}

status_t call(AudioCode code, const String8& text, Parcel* reply) {
    static const String16 descriptor = audioDescriptor();
    sp<IBinder> dead;
    status_t status = DEAD_OBJECT;
    for (int attempt = 0; attempt < 2 && status == DEAD_OBJECT; ++attempt) {
        const sp<IBinder> binder = daemon(dead);
        if (binder == nullptr) return DEAD_OBJECT;
        Parcel data;
        data.writeInterfaceToken(descriptor);
        data.writeString8(text);
        status = binder->transact(code, data, reply);
        dead = binder;
    }
    return status;
}

}  // namespace

status_t AudioSystem::setParameters(audio_io_handle_t, const String8& keyValuePairs) {
    Parcel reply;
    const status_t status = call(kAudioSetParameters, keyValuePairs, &reply);
    return status == NO_ERROR ? reply.readInt32() : status;
}

String8 AudioSystem::getParameters(audio_io_handle_t, const String8& keys) {
    Parcel reply;
    return call(kAudioGetParameters, keys, &reply) == NO_ERROR ? reply.readString8() : String8();
}

status_t AudioSystem::setParameters(const String8& keyValuePairs) {
    return setParameters(kGlobalSpace, keyValuePairs);
}

String8 AudioSystem::getParameters(const String8& keys) {
    return getParameters(kGlobalSpace, keys);
}

}  // namespace android
