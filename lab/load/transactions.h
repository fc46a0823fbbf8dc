// Transactions made of bytes: the fuzzer's bytes are mutations of what reached new code, those of
// the load on the phone are random. All operations of the interface come out of it, in any order,
// with arguments in and around their ranges or with any at all, in whole parcels and in broken
// ones.

#ifndef ZYL_LAB_LOAD_TRANSACTIONS_H
#define ZYL_LAB_LOAD_TRANSACTIONS_H

#include <binder/Parcel.h>

#include <cstddef>
#include <cstdint>
#include <string>

struct Transaction {
    uint32_t code = 0;
    android::Parcel data;
    // What a reply holds, see Shape; "-" for a code that nobody answers.
    const char* reply = "-";
    // What the service may keep for good if it takes the call: a region, a blob.
    bool handsRegionOver = false;
    size_t keptBytes = 0;
    uint32_t flags = 0;
    // One-way, or with objects that the code does not take: one that is answered refuses it.
    bool misused = false;
};

class TransactionSource {
  public:
    enum Form {
        kProper,   // whole parcels for codes that exist, plausible arguments
        kAnything  // those, too
    };

    // The second byte of a transaction, in the form kAnything, makes it any code when it is this.
    static constexpr uint8_t kOther = 0xFF;

    // The bytes are the caller's, as is `region`, a descriptor of memory to hand over.
    TransactionSource(const uint8_t* bytes, size_t size, Form form, int region)
        : mNext(bytes), mEnd(bytes + size), mForm(form), mRegion(region) {}

    // False when the bytes are used up.
    bool next(Transaction* transaction);

  private:
    uint32_t byte() { return mNext < mEnd ? *mNext++ : 0; }
    uint32_t word(int size);
    bool rarely() { return mForm == kAnything && byte() >= 0xF0; }
    void writeArgument(char kind, Transaction* transaction);
    void writeBlob(Transaction* transaction);
    void misuse(Transaction* transaction);
    void askPlatform(Transaction* transaction);
    uint32_t plausible(char kind);

    const uint8_t* mNext;
    const uint8_t* const mEnd;
    const Form mForm;
    const int mRegion;
};

// The bytes of which a source of the form kAnything makes a call of a table; none for a call that
// it cannot make.
std::string bytesFor(const std::string& call);

#endif  // ZYL_LAB_LOAD_TRANSACTIONS_H
