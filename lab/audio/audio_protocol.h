// What passes between AudioSystem and the audio daemon.

#ifndef ZYL_LAB_AUDIO_AUDIO_PROTOCOL_H
#define ZYL_LAB_AUDIO_AUDIO_PROTOCOL_H

#include <binder/IBinder.h>
#include <utils/String16.h>

// Arguments are 8-bit strings behind the token kAudioDescriptor.
enum AudioCode : uint32_t {
    kAudioSetParameters = android::IBinder::FIRST_CALL_TRANSACTION,  // pairs; reply: int32 status
    kAudioGetParameters,                                             // keys; reply: the answer
    kAudioSetReply,                                                  // key, answer; no reply
};

inline android::String16 audioServiceName() {
    return android::String16("media.audio_flinger");
}

inline android::String16 audioDescriptor() {
    return android::String16("zyl.lab.IAudio");
}

#endif  // ZYL_LAB_AUDIO_AUDIO_PROTOCOL_H
