// One connection of the simulated service, which can be reset at any moment.
#pragma once

#include <array>
#include <string>

#include <httplib.h>

namespace callejero {

/// A server's stream on a socket that it does not own.
class Connection : public httplib::Stream {
public:
    explicit Connection(socket_t socket);
    ~Connection() override;
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    /// The connection that the calling thread serves.
    [[nodiscard]] static Connection& current();

    /// Stops sending; closing then resets the connection.
    void refuse();
    [[nodiscard]] bool peerIsThere() const;

    bool is_readable() const override;
    bool is_writable() const override;
    ssize_t read(char* bytes, size_t size) override;
    ssize_t write(const char* bytes, size_t size) override;
    void get_remote_ip_and_port(std::string& ip, int& port) const override;
    void get_local_ip_and_port(std::string& ip, int& port) const override;
    socket_t socket() const override { return socket_; }

private:
    [[nodiscard]] bool waitFor(short event) const;

    socket_t socket_;
    bool isRefused_ = false;
    std::array<char, 4096> buffer_{};
    std::size_t at_ = 0, end_ = 0;
};

} // namespace callejero
