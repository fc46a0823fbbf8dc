// How dspctl talks to dspd: a line to this socket, then the answer until the end: "ok", a line end,
// and for a block its bytes; or what is wrong.

#ifndef ZYL_LAB_DSP_CONTROL_H
#define ZYL_LAB_DSP_CONTROL_H

#include <sys/socket.h>
#include <sys/un.h>

constexpr char kDspAnswerOk[] = "ok\n";

inline sockaddr_un dspControlAddress() {
    return {AF_UNIX, "/run/dspd.sock"};
}

#endif  // ZYL_LAB_DSP_CONTROL_H
