// A connection.
#include "tools/callejero/Connection.h"

#include <algorithm>
#include <cerrno>

#include <poll.h>
#include <sys/socket.h>

namespace callejero {
namespace {

constexpr int patienceMs = 5000;

thread_local Connection* served = nullptr;

} // namespace

Connection::Connection(socket_t socket) : socket_(socket) { served = this; }

Connection::~Connection() { served = nullptr; }

Connection& Connection::current() { return *served; }

void Connection::refuse() {
    isRefused_ = true;
    const linger reset{.l_onoff = 1, .l_linger = 0};
    setsockopt(socket_, SOL_SOCKET, SO_LINGER, &reset, sizeof reset);
}

bool Connection::peerIsThere() const {
    char byte = 0;
    const ssize_t count = recv(socket_, &byte, 1, MSG_PEEK | MSG_DONTWAIT);
    return count > 0 || (count < 0 && (errno == EAGAIN || errno == EINTR));
}

bool Connection::waitFor(short event) const {
    pollfd waited{.fd = socket_, .events = event, .revents = 0};
    return poll(&waited, 1, patienceMs) > 0 && (waited.revents & event) != 0;
}

bool Connection::is_readable() const { return at_ < end_ || waitFor(POLLIN); }

bool Connection::is_writable() const { return !isRefused_ && waitFor(POLLOUT); }

ssize_t Connection::read(char* bytes, size_t size) {
    if (at_ == end_) {
        const ssize_t count = waitFor(POLLIN) ? recv(socket_, buffer_.data(), buffer_.size(), 0) : -1;
        if (count <= 0) {
            return count;
        }
        at_ = 0;
        end_ = static_cast<std::size_t>(count);
    }
    const std::size_t count = std::min(size, end_ - at_);
    std::copy_n(buffer_.begin() + static_cast<std::ptrdiff_t>(at_), count, bytes);
    at_ += count;
    return static_cast<ssize_t>(count);
}

ssize_t Connection::write(const char* bytes, size_t size) {
    return is_writable() ? send(socket_, bytes, size, MSG_NOSIGNAL) : -1;
}

void Connection::get_remote_ip_and_port(std::string& ip, int& port) const {
    ip.clear();
    port = 0;
}

void Connection::get_local_ip_and_port(std::string& ip, int& port) const { get_remote_ip_and_port(ip, port); }

} // namespace callejero
