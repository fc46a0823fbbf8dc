// The binder library asks one system property: whether the phone has booted. While it has not, the
// library looks for a missing service ten times a second and not once. That suits this phone, so
// the answer is always the default. Hidden, so that it stands in for nobody else's property_get.
#include <cstring>

extern "C" __attribute__((visibility("hidden"))) int property_get(const char*, char* value,
                                                                  const char* fallback) {
    strcpy(value, fallback);
    return static_cast<int>(strlen(value));
}
