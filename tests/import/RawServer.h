// A peer that sends exactly the bytes that a test gives it, whether they are HTTP or not.
#pragma once

#include <string>
#include <thread>
#include <vector>

/// Listens on loopback; serves one connection after the other with one answer each, and closes it.
class RawServer {
public:
    explicit RawServer(std::vector<std::string> answers);
    ~RawServer();
    RawServer(const RawServer&) = delete;
    RawServer& operator=(const RawServer&) = delete;

    /// "http://127.0.0.1:PORT"
    [[nodiscard]] std::string url() const;
    /// The bytes of each request, once all answers are sent.
    [[nodiscard]] const std::vector<std::string>& requests();

private:
    void serve(const std::string& answer);

    int listener_;
    int port_ = 0;
    std::vector<std::string> requests_;
    std::thread thread_;
};
