#include "lab/dsp/control.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>

std::string askDsp(const std::string& line) {
    const int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const sockaddr_un address = dspControlAddress();
    if (connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0) {
        return std::string("dspd cannot be reached: ") + strerror(errno);
    }
    std::string answer;
    char part[4096];
    ssize_t length = send(fd, line.data(), line.size(), MSG_NOSIGNAL);
    while (length >= 0 && (length = read(fd, part, sizeof(part))) > 0) {
        answer.append(part, static_cast<size_t>(length));
    }
    close(fd);
    return answer;
}
