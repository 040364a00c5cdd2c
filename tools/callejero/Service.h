// Listening, and the answer to each request.
#pragma once

#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <thread>

#include <httplib.h>

#include "tools/callejero/Conduct.h"
#include "tools/callejero/Directory.h"

namespace callejero {

/// The library's server, whose connections can be reset.
class Listener : public httplib::Server {
public:
    /// Closes the open connections and all that still come.
    void hangUp();

private:
    bool process_and_close_socket(socket_t socket) override;

    std::mutex mutex_;
    std::set<socket_t> open_;
    bool isHungUp_ = false;
};

/// Answers from a directory as its conduct says, which must outlive it.
class Service {
public:
    /// Port 0 means any free one. Errors: std::runtime_error (Spanish) if the port is not available.
    Service(std::unique_ptr<const Directory> directory, int port, Conduct& conduct);
    ~Service() { stop(); }
    Service(const Service&) = delete;
    Service& operator=(const Service&) = delete;

    [[nodiscard]] int port() const { return port_; }
    void stop();

private:
    void serve(const httplib::Request& request, httplib::Response& response);
    void refuse(const std::string& reason, int status, httplib::Response& response);
    void answer(const Request& request, const Conduct::Noted& noted, httplib::Response& response);
    [[nodiscard]] std::string answerText(const Request& request) const;
    void stallMidway(const std::string& text, unsigned releases, httplib::Response& response);
    void sendHuge(httplib::Response& response);
    void sendHugeChunked(httplib::Response& response);
    [[nodiscard]] bool sendBallast(std::size_t size, httplib::DataSink& sink);
    [[nodiscard]] bool hold(unsigned releases);

    std::unique_ptr<const Directory> directory_;
    Conduct& conduct_;
    Listener listener_;
    int port_ = 0;
    std::thread thread_;
};

} // namespace callejero
