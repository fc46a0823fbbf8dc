// The little of <system/audio.h> that AudioSystem's signatures need.

#ifndef ZYL_LAB_SYSTEM_AUDIO_H
#define ZYL_LAB_SYSTEM_AUDIO_H

typedef int audio_io_handle_t;

#endif  // ZYL_LAB_SYSTEM_AUDIO_H
