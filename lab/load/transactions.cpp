#include "lab/load/transactions.h"

#include <binder/IBinder.h>

#include <algorithm>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "interface/Izyl_kwo_service.h"

namespace {

struct Shape {
    uint32_t code;
    std::string arguments;
    std::string reply;
};

struct Range {
    char kind;
    int32_t low;
    int32_t high;
};

// Switch, mode, route, tuning, band, gain, index, block.
constexpr Range kRanges[] = {{'s', 0, 1}, {'m', 1, 3},       {'r', 0, 2}, {'t', 0, 2},
                             {'b', 0, 9}, {'g', 725, 32767}, {'i', 1, 2}, {'k', 0, 2}};

constexpr uint32_t kLengths[] = {61700, 61699, 65536, 70000, 4096, 0};
constexpr float kFloats[] = {0.0F, 1.0F, -1.0F, 0.25F, -999.0F, 1e30F};

// A code, its arguments, a letter each as writeArgument and kRanges have them, and its reply, see
// Transaction; "-" for none.
constexpr char kShapes[] =
        "1 s p  2 - ?w  3 s ?  4 - rw  5 m r  6 r rw  7 rt r  8 b rw  9 bg r  10 - -  11 - s  "
        "12 s r  13 - rw  14 - rwwwwwwwwww  19 BB ?r  20 BB ?r  21 - rn  22 - rn  "
        "15 gggggggggg r  23 rBB ?r  24 r rn  26 i rn  25 iBB ?r  27 BB ?r  28 - rn  29 ffff r  "
        "30 - ?rwwww  31 - r  32 x rw  40 x r  41 s r  1001 r rw  3001 D r  3004 - rwwwwwwwwww  "
        "3005 xxxxxxxxxx r  3002 k r  3003 k r  ";

const std::vector<Shape>& shapes() {
    static const std::vector<Shape> all = [] {
        std::istringstream text(kShapes);
        std::vector<Shape> read;
        for (Shape s; text >> s.code >> s.arguments >> s.reply;) read.push_back(s);
        return read;
    }();
    return all;
}

}  // namespace

bool TransactionSource::next(Transaction* transaction) {
    if (mNext == mEnd) return false;
    const Shape* shape = &shapes()[byte() % shapes().size()];
    static const Shape unknown = {0, "xx", "-"};
    transaction->code = shape->code;
    if (rarely()) {
        transaction->code = word(2) % 5001;
        shape = &unknown;
    }
    for (const Shape& s : shapes()) {
        if (s.code == transaction->code) transaction->reply = s.reply.c_str();
    }
    android::Parcel& data = transaction->data;
    if (rarely()) {
        if (byte() % 2 != 0) data.writeInterfaceToken(android::String16("zyl.kwo"));
    } else {
        data.writeInterfaceToken(Izyl_kwo_service::descriptor);
    }
    for (char kind : shape->arguments) {
        if (kind != '-') writeArgument(kind, transaction);
    }
    // Cut off somewhere, but never in the middle of a descriptor.
    if (rarely() && data.objectsCount() == 0) data.setDataSize(byte() % (data.dataSize() + 1));
    return true;
}

// Little-endian.
uint32_t TransactionSource::word(int size) {
    uint32_t value = 0;
    for (int i = 0; i < size; ++i) value |= byte() << (8 * i);
    return value;
}

// Around the edges, too, unless the call is to be proper.
uint32_t TransactionSource::plausible(char kind) {
    const Range* range = std::find_if(std::begin(kRanges), std::end(kRanges),
                                      [kind](const Range& r) { return r.kind == kind; });
    if (range == std::end(kRanges)) return word(4);
    const int32_t margin = mForm == kAnything ? 1 : 0;
    const auto count = static_cast<uint32_t>(range->high - range->low + 1 + 2 * margin);
    return static_cast<uint32_t>(range->low - margin) + word(count > 0x100 ? 2 : 1) % count;
}

void TransactionSource::writeArgument(char kind, Transaction* transaction) {
    android::Parcel& data = transaction->data;
    switch (kind) {
        case 'B': writeBlob(transaction); return;
        case 'D':
            if (!rarely()) data.writeDupFileDescriptor(mRegion);
            data.writeUint32(rarely() ? word(4) : kLengths[byte() % std::size(kLengths)]);
            transaction->handsRegionOver = true;
            return;
        case 'f':
            if (rarely()) break;
            data.writeFloat(kFloats[byte() % std::size(kFloats)]);
            return;
        default: break;
    }
    data.writeUint32(rarely() ? word(4) : plausible(kind));
}

// Mostly a few bytes, sometimes many; seldom as many as it says.
void TransactionSource::writeBlob(Transaction* transaction) {
    const uint32_t choice = byte();
    const uint32_t size = choice < 0xE0 ? choice % 64 : (choice - 0xDF) * 1500;
    std::vector<uint8_t> bytes(size, 'x');
    std::generate_n(bytes.begin(), std::min<size_t>(size, mEnd - mNext), [this] { return byte(); });
    transaction->data.writeUint32(rarely() ? word(4) : size);
    transaction->data.write(bytes.data(), size);
    const bool kept = transaction->code == Izyl_kwo_service::SET_SPEAKER_ZYLCS_TUNING ||
                      transaction->code == Izyl_kwo_service::SET_SECOND_SPEAKER_ZYLCS_TUNING;
    // As malloc has it on a 32-bit machine.
    if (kept && transaction->keptBytes == 0)
        transaction->keptBytes = std::max(size + 11U, 16U) & ~7U;
}
