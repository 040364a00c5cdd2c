// The simulated street-directory service: a real HTTP server on loopback, in threads of its own.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "tools/callejero/Directory.h"
#include "tools/callejero/Fault.h"
#include "tools/callejero/Request.h"

namespace callejero {

/// Runs from its construction to stop() or its end. Everything may be called from any thread.
class Server {
public:
    /// Is given a line for each request, from the server's threads, one at a time.
    using Log = std::function<void(const std::string&)>;

    /// Port 0 is any free one. Errors: std::runtime_error (Spanish) when it cannot be had.
    explicit Server(std::unique_ptr<const Directory> directory, int port = 0, Log log = {});
    ~Server();
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    /// "http://127.0.0.1:PORT", which is what a configuration takes as the service's host.
    [[nodiscard]] std::string url() const;

    /// Misbehaves from now on in this operation, for this province or municipality (empty: all). A later rule
    /// goes before an earlier one; Fault::None makes well again.
    void setFault(Operation operation, Fault fault, const std::string& name = {});
    void addFault(const FaultRule& rule);
    void clearFaults();
    /// Lets all answers go on that a fault holds, to the requests that came until now.
    void release();
    /// Time that each answer takes.
    void setDelay(std::chrono::milliseconds delay);

    /// What was asked, in order, misbehaviour or not.
    [[nodiscard]] std::vector<Request> requests() const;
    /// What was wrong with the requests that were not written as they must be; each got a status 400.
    [[nodiscard]] std::vector<std::string> complaints() const;

    /// Ends it at once, held answers too: from now on connections are refused.
    void stop();

private:
    class Service;
    std::unique_ptr<Service> service_;
};

} // namespace callejero
