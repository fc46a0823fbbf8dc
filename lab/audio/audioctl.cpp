// audioctl: sets what the audio daemon answers.

#include <binder/IServiceManager.h>
#include <binder/Parcel.h>
#include <utils/String8.h>

#include <cstdio>
#include <cstring>

#include "lab/audio/audio_protocol.h"

using namespace android;

int main(int argc, char** argv) {
    if (argc != 4 || strcmp(argv[1], "reply") != 0) {
        fprintf(stderr, "usage: audioctl reply KEY TEXT   answer TEXT when KEY is asked for\n");
        return 2;
    }
    const sp<IBinder> daemon = defaultServiceManager()->checkService(audioServiceName());
    Parcel data;
    Parcel reply;
    data.writeInterfaceToken(audioDescriptor());
    data.writeString8(String8(argv[2]));
    data.writeString8(String8(argv[3]));
    if (daemon == nullptr || daemon->transact(kAudioSetReply, data, &reply) != NO_ERROR) {
        fprintf(stderr, "audioctl: audiod is not there\n");
        return 1;
    }
}
