#include "client/terminal.h"

#include <poll.h>
#include <unistd.h>

#include <csignal>

namespace {

volatile sig_atomic_t gInterrupted = 0;

constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP};

void setHandlers(void (*handler)(int)) {
    struct sigaction action = {};
    action.sa_handler = handler;
    for (int signal : kSignals) sigaction(signal, &action, nullptr);
}

}  // namespace

Interrupts::Interrupts() {
    gInterrupted = 0;
    setHandlers([](int) { gInterrupted = 1; });
    signal(SIGPIPE, SIG_IGN);
}

Interrupts::~Interrupts() {
    setHandlers(SIG_DFL);
    signal(SIGPIPE, SIG_DFL);
}

bool Interrupts::happened() const {
    return gInterrupted != 0;
}

Keyboard::Keyboard() : mIsTerminal(tcgetattr(STDIN_FILENO, &mBefore) == 0) {
    if (!mIsTerminal) return;
    termios keys = mBefore;
    keys.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
    tcsetattr(STDIN_FILENO, TCSANOW, &keys);
}

Keyboard::~Keyboard() {
    if (mIsTerminal) tcsetattr(STDIN_FILENO, TCSANOW, &mBefore);
}

int Keyboard::next(int milliseconds) {
    pollfd input = {STDIN_FILENO, POLLIN, 0};
    if (poll(&input, 1, milliseconds) <= 0) return kNoKey;
    unsigned char key = 0;
    if (read(STDIN_FILENO, &key, 1) != 1) return kEnd;
    return key;
}
