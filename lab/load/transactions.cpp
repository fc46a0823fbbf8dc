#include "lab/load/transactions.h"

#include <binder/Binder.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <vector>

#include "lab/cases/case_table.h"
#include "lab/cases/protocol.h"

namespace {

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

}  // namespace

bool TransactionSource::next(Transaction* transaction) {
    if (mNext == mEnd) return false;
    const Shape* shape = &shapes()[byte() % shapes().size()];
    static const Shape unknown = {0, "", "xx", "-"};
    transaction->code = shape->code;
    if (rarely()) {
        transaction->code = word(2) % 5001;
        shape = &unknown;
    }
    const Shape* known = shapeOf(transaction->code);
    if (known != nullptr) transaction->reply = known->reply.c_str();
    android::Parcel& data = transaction->data;
    if (rarely()) {
        if (byte() % 2 != 0) data.writeInterfaceToken(android::String16("zyl.kwo"));
    } else {
        data.writeInterfaceToken(android::String16(kDescriptor));
    }
    for (char kind : shape->arguments) writeArgument(kind, transaction);
    if (rarely()) misuse(transaction);
    const bool takesOne = known != nullptr && known->arguments.find('D') != std::string::npos;
    transaction->misused = transaction->flags != 0 || data.objectsCount() > (takesOne ? 1 : 0);
    return true;
}

// As no client is meant to call.
void TransactionSource::misuse(Transaction* transaction) {
    android::Parcel& data = transaction->data;
    const uint32_t choice = byte();
    switch (choice % 5) {
        case 0: transaction->flags = android::IBinder::FLAG_ONEWAY; return;
        case 1:
            for (uint32_t i = 0; i < 1 + choice / 64; ++i) data.writeDupFileDescriptor(mRegion);
            return;
        case 2: data.writeStrongBinder(new android::BBinder); return;
        case 3: return askPlatform(transaction);
        default:
            // Cut off somewhere, but never in the middle of a descriptor.
            if (data.objectsCount() == 0) data.setDataSize(byte() % (data.dataSize() + 1));
    }
}

// What the base class answers, in any size. A dump is for callers who wait for the permission
// service.
void TransactionSource::askPlatform(Transaction* transaction) {
    constexpr uint32_t kRequests[] = {
            android::IBinder::PING_TRANSACTION, android::IBinder::INTERFACE_TRANSACTION,
            android::IBinder::SHELL_COMMAND_TRANSACTION, android::IBinder::SYSPROPS_TRANSACTION};
    android::Parcel& data = transaction->data;
    const uint32_t choice = byte();
    transaction->code = kRequests[choice % std::size(kRequests)];
    transaction->reply = "-";
    for (uint32_t words = word(2) % 2048; words > 0; --words) data.writeUint32(word(4));
    if (data.objectsCount() == 0) data.setDataSize(data.dataSize() - choice / 64);
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
    // Of the speaker's two codes.
    const bool kept = transaction->code == 19 || transaction->code == 20;
    // As malloc has it on a 32-bit machine.
    if (kept && transaction->keptBytes == 0)
        transaction->keptBytes = std::max(size + 11U, 16U) & ~7U;
}

namespace {

// What rarely() takes for no, and for yes.
constexpr char kNo = '\0';
constexpr char kYes = '\xFF';

std::string littleEndian(uint32_t value, size_t size) {
    std::string bytes(size, '\0');
    for (char& byte : bytes) byte = static_cast<char>(value), value >>= 8;
    return bytes;
}

std::string bytesForBlob(const std::string& word) {
    const bool announced = word[0] == '#';
    const bool text = word[0] == '"' || word[0] == '\'';
    const auto number = static_cast<uint32_t>(strtol(&word[announced ? 1 : 0], nullptr, 0));
    std::string blob = text ? bytesOfText(word) : std::string(announced ? 0 : number % 64, '\0');
    blob.resize(std::min<size_t>(blob.size(), 63));
    const std::string size = announced ? kYes + littleEndian(number, 4) : std::string(1, kNo);
    return static_cast<char>(blob.size()) + blob + size;
}

std::string bytesForNumber(char kind, const std::string& word) {
    const auto value = static_cast<int32_t>(strtoll(word.c_str(), nullptr, 0));
    const Range* range = std::find_if(std::begin(kRanges), std::end(kRanges),
                                      [kind](const Range& r) { return r.kind == kind; });
    if (range == std::end(kRanges)) return kNo + littleEndian(static_cast<uint32_t>(value), 4);
    if (value < range->low - 1 || value > range->high + 1) {
        return kYes + littleEndian(static_cast<uint32_t>(value), 4);
    }
    const bool wide = range->high - range->low + 3 > 0x100;
    return kNo + littleEndian(static_cast<uint32_t>(value - range->low + 1), wide ? 2 : 1);
}

std::string bytesForFloat(const std::string& word) {
    const float value = strtof(word.c_str(), nullptr);
    uint32_t bits = 0;
    memcpy(&bits, &value, sizeof(bits));
    return std::string(2, kYes) + littleEndian(bits, 4);
}

}  // namespace

std::string bytesFor(const std::string& call) {
    const std::vector<std::string> words = wordsOf(call);
    const Shape* shape = shapeNamed(words.at(0));
    if (shape == nullptr) return "";
    std::string bytes = {static_cast<char>(shape - shapes().data()), kNo, kNo};
    for (size_t i = 0; i < shape->arguments.size(); ++i) {
        const std::string word = i + 1 < words.size() ? words[i + 1] : "0";
        switch (const char kind = shape->arguments[i]) {
            case 'B': bytes += bytesForBlob(word); break;
            case 'D': bytes += std::string(3, kNo); break;
            case 'f': bytes += bytesForFloat(word); break;
            default: bytes += bytesForNumber(kind, word);
        }
    }
    return bytes + kNo;
}
