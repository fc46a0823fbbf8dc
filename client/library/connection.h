// The service, looked up and, when it restarts, looked up again. For one thread.

#ifndef ZYL_CLIENT_LIBRARY_CONNECTION_H
#define ZYL_CLIENT_LIBRARY_CONNECTION_H

#include <atomic>
#include <memory>
#include <vector>

#include "client/library/outcome.h"
#include "client/library/shared_region.h"
#include "interface/Izyl_kwo_service.h"

class Connection {
  public:
    Connection() = default;
    // With a service already at hand, in this process for instance.
    explicit Connection(const android::sp<Izyl_kwo_service>& service) : mService(service) {}
    virtual ~Connection() = default;
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    // Looks the service up, for that many seconds if need be. A service that was there before, and
    // all that was shared with it, is forgotten.
    virtual Outcome connect(double seconds);
    bool connected() const { return mService != nullptr; }

    // Only when connected.
    Izyl_kwo_service& service();
    // How often the service was asked for: a counter that stands still while a call takes long. It
    // may be read from any thread.
    uint32_t uses() const { return mUses; }

    // The DSP's block through shared memory, of which a connection hands over one region. Return
    // one of the service's results.
    int32_t fetchBlock(int32_t number, std::vector<uint8_t>* bytes);
    // `bytes` is as long as a block is.
    int32_t pushBlock(int32_t number, const std::vector<uint8_t>& bytes);

  private:
    int32_t shareRegion();

    android::sp<Izyl_kwo_service> mService;
    std::unique_ptr<SharedRegion> mRegion;
    std::atomic<uint32_t> mUses{0};
};

#endif  // ZYL_CLIENT_LIBRARY_CONNECTION_H
