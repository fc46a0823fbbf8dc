// The part of libmedia's AudioSystem that carries parameter texts to and from the audio system.

#ifndef ZYL_LAB_MEDIA_AUDIOSYSTEM_H
#define ZYL_LAB_MEDIA_AUDIOSYSTEM_H

#include <system/audio.h>
#include <utils/Errors.h>
#include <utils/String8.h>

namespace android {

class AudioSystem {
  public:
    // `keyValuePairs` is "KEY=VALUE" pairs separated by ';'. Handle 0 is the global space.
    static status_t setParameters(audio_io_handle_t ioHandle, const String8& keyValuePairs);
    // Empty when the audio system has no answer, or is not there.
    static String8 getParameters(audio_io_handle_t ioHandle, const String8& keys);

    // The same in the global space.
    static status_t setParameters(const String8& keyValuePairs);
    static String8 getParameters(const String8& keys);
};

}  // namespace android

#endif  // ZYL_LAB_MEDIA_AUDIOSYSTEM_H
