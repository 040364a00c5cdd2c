// The simulated street-directory service: a real HTTP server on loopback, in threads of its own.
#pragma once

#include <memory>
#include <string>

#include "tools/callejero/Conduct.h"
#include "tools/callejero/Directory.h"

namespace callejero {

class Service;

/// Runs from its construction to stop() or its end. Everything may be called from any thread.
class Server : public Conduct {
public:
    /// Port 0 is any free one. Errors: std::runtime_error (Spanish) when it cannot be had.
    explicit Server(std::unique_ptr<const Directory> directory, int port = 0, Log log = {});
    ~Server();
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    /// "http://127.0.0.1:PORT", which is what a configuration takes as the service's host.
    [[nodiscard]] std::string url() const;

    /// Ends it at once, held answers too: from now on connections are refused.
    void stop();

private:
    std::unique_ptr<Service> service_; // behind a pointer, as its HTTP library is large
};

} // namespace callejero
