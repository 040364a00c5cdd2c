// How the simulated service behaves, and which requests it received.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "tools/callejero/Fault.h"
#include "tools/callejero/Request.h"

namespace callejero {

/// Shared by the code that sets the service's behaviour and the threads that answer: everything may be called
/// from any thread.
class Conduct {
public:
    /// Receives a line for each request, one at a time.
    using Log = std::function<void(const std::string&)>;

    explicit Conduct(Log log);

    /// Misbehaves from now on in this operation, for this province or municipality (empty: all). A later rule
    /// takes precedence over an earlier one; Fault::None restores good behaviour.
    void setFault(Operation operation, Fault fault, const std::string& name = {});
    void addFault(const FaultRule& rule);
    void clearFaults();
    /// Releases the held answers to all requests received so far.
    void release();
    /// Time that each answer takes.
    void setDelay(std::chrono::milliseconds delay);

    /// The requests in order, whether misbehaving or not.
    [[nodiscard]] std::vector<Request> requests() const;
    /// What was wrong with the requests that were not written as required; each got a status 400, or 404 for
    /// a path that is not the service's.
    [[nodiscard]] std::vector<std::string> complaints() const;
    /// Bytes of all huge answers that were sent before the client hung up.
    [[nodiscard]] std::size_t sentOfHuge() const { return sentOfHuge_; }

private:
    friend class Service; // calls the following

    /// The fault that applies to a request, and the number of releases when it came.
    struct Noted {
        Fault fault;
        unsigned releases;
    };
    [[nodiscard]] Noted note(const Request& request);
    void complain(const std::string& reason);
    /// Waits as long as an answer takes.
    void takeTime();
    /// Waits until release(), the service's end, or until the client no longer wants the answer; false when
    /// the service ends.
    [[nodiscard]] bool hold(unsigned releases, const std::function<bool()>& isWanted);
    /// Ends all waiting.
    void end();
    void countHuge(std::size_t bytes) { sentOfHuge_ += bytes; }

    Log log_;
    std::atomic<std::size_t> sentOfHuge_ = 0;
    mutable std::mutex mutex_; // for all members below
    std::condition_variable changed_;
    std::vector<FaultRule> faults_;
    std::vector<Request> requests_;
    std::vector<std::string> complaints_;
    std::chrono::milliseconds delay_{0};
    unsigned releases_ = 0;
    bool isEnding_ = false;
};

} // namespace callejero
