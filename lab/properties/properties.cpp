// property_get as on the phone, from one file a property: cheap to read, and changed as a whole.

#include <cutils/properties.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstring>
#include <string>

#include "lab/properties/store.h"

int property_get(const char* key, char* value, const char* default_value) {
    ssize_t length = -1;
    const int fd = isPropertyKey(key) ? open(propertyFile(key).c_str(), O_RDONLY | O_CLOEXEC) : -1;
    if (fd >= 0) {
        length = read(fd, value, PROPERTY_VALUE_MAX - 1);
        close(fd);
    }
    if (length <= 0) {
        if (default_value == nullptr) default_value = "";
        length = static_cast<ssize_t>(strnlen(default_value, PROPERTY_VALUE_MAX - 1));
        memcpy(value, default_value, static_cast<size_t>(length));
    }
    value[length] = '\0';
    return static_cast<int>(length);
}
