// What a person at the terminal wants meanwhile: keys, and signals.

#ifndef ZYL_CLIENT_TERMINAL_H
#define ZYL_CLIENT_TERMINAL_H

#include <termios.h>

// While it lives, Ctrl-C, a hang-up and a termination do not end the process; it asks for them. A
// reader that is gone makes writing fail. One at a time.
class Interrupts {
  public:
    Interrupts();
    ~Interrupts();
    Interrupts(const Interrupts&) = delete;
    Interrupts& operator=(const Interrupts&) = delete;

    bool happened() const;
};

// Single keys from standard input, without waiting for the end of a line if that is a terminal.
class Keyboard {
  public:
    enum Key : int { kNoKey = -1, kEnd = -2 };

    Keyboard();
    ~Keyboard();
    Keyboard(const Keyboard&) = delete;
    Keyboard& operator=(const Keyboard&) = delete;

    bool isTerminal() const { return mIsTerminal; }
    // The next key within that time, kNoKey when there is none or a signal came, kEnd when there
    // will be no more.
    int next(int milliseconds);

  private:
    bool mIsTerminal;
    termios mBefore = {};
};

#endif  // ZYL_CLIENT_TERMINAL_H
