#include "tests/support/audio_system.h"

#include <media/AudioSystem.h>

#include "lab/journal/journal.h"

std::map<std::string, std::string>& audioReplies() {
    static std::map<std::string, std::string> replies;
    return replies;
}

namespace android {

status_t AudioSystem::setParameters(audio_io_handle_t handle, const String8& pairs) {
    if (handle != 0) return BAD_VALUE;
    journal("audio set %s", pairs.string());
    return NO_ERROR;
}

String8 AudioSystem::getParameters(audio_io_handle_t handle, const String8& keys) {
    if (handle != 0) return String8("");
    journal("audio get %s", keys.string());
    const auto reply = audioReplies().find(keys.string());
    return String8(reply == audioReplies().end() ? "" : reply->second.c_str());
}

}  // namespace android
