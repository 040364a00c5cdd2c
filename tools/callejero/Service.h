// The simulated service's inside: listening, and what becomes of a request.
#pragma once

#include <condition_variable>
#include <mutex>
#include <set>
#include <thread>

#include <httplib.h>

#include "tools/callejero/Server.h"

namespace callejero {

/// The library's server on connections that can be reset.
class Listener : public httplib::Server {
public:
    /// Ends the connections that are open, and those that still come.
    void hangUp();

private:
    bool process_and_close_socket(socket_t socket) override;

    std::mutex mutex_;
    std::set<socket_t> open_;
    bool isHungUp_ = false;
};

class Server::Service {
public:
    Service(std::unique_ptr<const Directory> directory, int port, Log log);
    ~Service() { stop(); }
    Service(const Service&) = delete;
    Service& operator=(const Service&) = delete;

    [[nodiscard]] int port() const { return port_; }
    void addFault(const FaultRule& rule);
    void clearFaults();
    void release();
    void setDelay(std::chrono::milliseconds delay);
    [[nodiscard]] std::vector<Request> requests() const;
    [[nodiscard]] std::vector<std::string> complaints() const;
    void stop();

private:
    void serve(const httplib::Request& request, httplib::Response& response);
    void complain(const std::string& reason, httplib::Response& response);
    /// What is on a request, and how often answers had been let go when it came.
    struct Noted {
        Fault fault;
        unsigned releases;
    };
    void answer(const Request& request, const Noted& noted, httplib::Response& response);
    void stallMidway(const std::string& text, unsigned releases, httplib::Response& response);
    [[nodiscard]] Noted note(const Request& request);
    [[nodiscard]] std::string answerText(const Request& request) const;
    void takeTime();
    [[nodiscard]] bool hold(unsigned releases);

    std::unique_ptr<const Directory> directory_;
    Log log_;
    Listener listener_;
    int port_ = 0;
    mutable std::mutex mutex_; // for all that follows
    std::condition_variable changed_;
    std::vector<FaultRule> faults_;
    std::vector<Request> requests_;
    std::vector<std::string> complaints_;
    std::chrono::milliseconds delay_{0};
    unsigned releases_ = 0;
    bool isStopping_ = false;
    std::thread thread_;
};

} // namespace callejero
