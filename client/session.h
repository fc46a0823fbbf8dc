// One run of kwoctl: its options, and the service once it is connected.

#ifndef ZYL_CLIENT_SESSION_H
#define ZYL_CLIENT_SESSION_H

#include <memory>
#include <vector>

#include "client/shared_region.h"
#include "interface/Izyl_kwo_service.h"

struct Options {
    bool json = false;
    bool bars = false;    // standard output is for a person's eyes
    bool colour = false;  // and shows colours
    double waitSeconds = 0;
    int32_t workSize = -1;  // negative: not given
};

class Session {
  public:
    explicit Session(const Options& given) : options(given) {}

    // Looks the service up, for as long as the options allow. False, with a complaint on standard
    // error, when it is not there.
    bool connect();
    bool connected() const { return mService != nullptr; }
    // Only when connected.
    Izyl_kwo_service& service() const { return *mService; }

    // The DSP's block through shared memory, of which a session hands over one region. Returns a
    // ZylKwoResult.
    int32_t fetchBlock(int32_t number, std::vector<uint8_t>* bytes);
    // `bytes` is as long as a block is.
    int32_t pushBlock(int32_t number, const std::vector<uint8_t>& bytes);

    const Options options;

  private:
    int32_t shareRegion();

    android::sp<Izyl_kwo_service> mService;
    std::unique_ptr<SharedRegion> mRegion;
};

#endif  // ZYL_CLIENT_SESSION_H
