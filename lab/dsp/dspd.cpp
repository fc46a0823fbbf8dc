// dspd: makes /dev/zyl_quorin and puts the DSP model behind it.

#define FUSE_USE_VERSION 35

#include <cuse_lowlevel.h>
#include <fcntl.h>
#include <fuse_opt.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "lab/dsp/control.h"
#include "lab/dsp/dsp_model.h"

namespace {

DspModel gDsp;

void openDevice(fuse_req_t request, fuse_file_info* file) {
    // Whoever drives the DSP reads and writes.
    if ((file->flags & O_ACCMODE) != O_RDWR) {
        fuse_reply_err(request, EACCES);
    } else {
        fuse_reply_open(request, file);
    }
}

using CopyCall = ssize_t (*)(pid_t, const iovec*, unsigned long, const iovec*, unsigned long,
                             unsigned long);

// Copies between `own` and the memory of whoever makes the request, as a driver does; false where
// it has none.
bool copy(CopyCall call, fuse_req_t request, void* own, void* theirs, size_t size) {
    const iovec local = {own, size};
    const iovec remote = {theirs, size};
    return call(fuse_req_ctx(request)->pid, &local, 1, &remote, 1, 0) == static_cast<ssize_t>(size);
}

// The argument is longer than the request's number says, and only its first words say how long. The
// kernel would bring it, but no more than 128 KB.
int serve(fuse_req_t request, uint32_t command, void* argument) {
    const bool reads = command == quorin::kRead;
    quorin::Slice slice = {};
    if ((reads || command == quorin::kWrite) &&
        !copy(process_vm_readv, request, slice, argument, sizeof(slice))) {
        return EFAULT;
    }
    const size_t size = gDsp.argumentSize(command, slice);
    std::vector<uint8_t> bytes(std::max(size, sizeof(slice)));
    memcpy(bytes.data(), slice, sizeof(slice));
    if (!reads && !copy(process_vm_readv, request, bytes.data(), argument, size)) return EFAULT;
    const int error = gDsp.request(command, bytes.data(), bytes.size());
    if (error != 0 || !reads) return error;
    return copy(process_vm_writev, request, bytes.data(), argument, size) ? 0 : EFAULT;
}

void serveRequest(fuse_req_t request, int number, void* argument, fuse_file_info*, unsigned,
                  const void*, size_t, size_t) {
    const int error = serve(request, static_cast<uint32_t>(number), argument);
    if (error != 0) {
        fuse_reply_err(request, error);
    } else {
        fuse_reply_ioctl(request, 0, nullptr, 0);
    }
}

std::string answer(const std::string& line) {
    unsigned first = 0;
    unsigned second = 0;
    if (sscanf(line.c_str(), "fail %u %u", &first, &second) == 2) {
        gDsp.fail(first, second);
    } else if (sscanf(line.c_str(), "slow %u", &first) == 1) {
        gDsp.slow(first);
    } else if (line == "reset") {
        gDsp.reset();
    } else if (sscanf(line.c_str(), "block %u", &first) == 1) {
        const std::vector<uint8_t> bytes = gDsp.block(first);
        return kDspAnswerOk + std::string(bytes.begin(), bytes.end());
    } else {
        return "not understood: " + line;
    }
    return kDspAnswerOk;
}

void serveControl(int listener) {
    while (true) {
        const int client = accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (client < 0) continue;
        char line[256] = {};
        if (read(client, line, sizeof(line) - 1) > 0) {
            const std::string text = answer(line);
            if (send(client, text.data(), text.size(), MSG_NOSIGNAL) < 0) perror("dspd: control");
        }
        close(client);
    }
}

bool startControl() {
    const int listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const sockaddr_un address = dspControlAddress();
    unlink(address.sun_path);
    if (bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0 ||
        listen(listener, 8) != 0) {
        perror("dspd: control socket");
        return false;
    }
    std::thread(serveControl, listener).detach();
    return true;
}

}  // namespace

int main(int, char** argv) {
    if (!startControl()) return 1;
    const char* device[] = {"DEVNAME=zyl_quorin"};
    cuse_info info = {};
    info.dev_info_argc = 1;
    info.dev_info_argv = device;
    info.flags = CUSE_UNRESTRICTED_IOCTL;
    cuse_lowlevel_ops operations = {};
    operations.open = openDevice;
    operations.ioctl = serveRequest;
    char foreground[] = "-f";
    char* arguments[] = {argv[0], foreground, nullptr};
    return cuse_lowlevel_main(2, arguments, &info, &operations, nullptr);
}
