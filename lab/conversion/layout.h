// What the conversion library stand-in reports. By default a pipeline of 61,700 bytes whose rows
// lie apart from each other, except the ten gains (rows 3 to 12), which lie side by side.
//
// On the phone the optional file /etc/zyl/conversion.conf changes it, read once, at first use:
//     pipeline-size 16384
//     row 3 size 4         (rows 3 to 12 all get the size and stay side by side; rows behind
//                           a row that has grown over them move up)
//     no-version
// A program that is linked with the stand-in may change layout() before it asks for anything.

#ifndef ZYL_LAB_CONVERSION_LAYOUT_H
#define ZYL_LAB_CONVERSION_LAYOUT_H

#include <cstdint>
#include <optional>
#include <string>

// A listening test whose first value is this one fails with -9.
constexpr float kFailingTestValue = -999.0F;

struct Row {
    int32_t id;
    uint32_t size;
    int32_t offset;
};

struct Layout {
    uint32_t words[9];  // words[0] is the pipeline size
    Row rows[29];
    std::optional<std::string> version;
};

Layout defaultLayout();

// Gives a row another size, and with any of rows 3 to 12 all ten of them.
void setRowSize(Layout& layout, int row, uint32_t size);

Layout& layout();

#endif  // ZYL_LAB_CONVERSION_LAYOUT_H
