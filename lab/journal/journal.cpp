#include "lab/journal/journal.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>

void journal(const char* format, ...) {
    char line[1024];
    va_list arguments;
    va_start(arguments, format);
    const int wanted = vsnprintf(line, sizeof(line) - 1, format, arguments);
    va_end(arguments);
    if (wanted < 0) return;
    const size_t length = std::min(static_cast<size_t>(wanted), sizeof(line) - 2);
    std::replace(line, line + length, '\n', ' ');
    line[length] = '\n';
    // Opened anew for each line: the journal may be removed, or the root changed, in between.
    const int fd = open("/run/journal", O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0666);
    if (fd < 0) return;
    // One write, so that lines of several processes never mix.
    if (write(fd, line, length + 1) < 0) perror("journal");
    close(fd);
}
