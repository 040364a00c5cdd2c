// The simulated street-directory service: a real HTTP server on loopback, in threads of its own.
#pragma once

#include <memory>
#include <string>

#include "tools/callejero/Conduct.h"
#include "tools/callejero/Directory.h"

namespace callejero {

class Service;

/// Runs from its construction until stop() or its destruction. Everything may be called from any thread.
class Server : public Conduct {
public:
    /// Port 0 means any free one. Errors: std::runtime_error (Spanish) if the port is not available.
    explicit Server(std::unique_ptr<const Directory> directory, int port = 0, Log log = {});
    ~Server();
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    /// "http://127.0.0.1:PORT", as a configuration names the service's host.
    [[nodiscard]] std::string url() const;

    /// Stops at once, held answers included: from now on connections are refused.
    void stop();

private:
    std::unique_ptr<Service> service_; // by pointer, because its HTTP library is large
};

} // namespace callejero
