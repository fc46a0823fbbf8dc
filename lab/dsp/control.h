// How one talks to dspd: a line to its socket, then the answer until the end: "ok", a line end, and
// for a block its bytes; or what is wrong.

#ifndef ZYL_LAB_DSP_CONTROL_H
#define ZYL_LAB_DSP_CONTROL_H

#include <sys/socket.h>
#include <sys/un.h>

#include <string>

constexpr char kDspAnswerOk[] = "ok\n";

inline sockaddr_un dspControlAddress() {
    return {AF_UNIX, "/run/dspd.sock"};
}

// The answer to a line; what is wrong where dspd cannot be reached.
std::string askDsp(const std::string& line);

#endif  // ZYL_LAB_DSP_CONTROL_H
