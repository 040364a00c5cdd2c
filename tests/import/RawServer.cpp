// A peer that sends exactly the given bytes.
#include "RawServer.h"

#include <array>
#include <stdexcept>

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

namespace {

/// Whether a request is complete to its last byte, by its Content-Length.
bool isWhole(const std::string& request) {
    const std::size_t head = request.find("\r\n\r\n");
    if (head == std::string::npos) {
        return false;
    }
    const std::string header = "Content-Length: ";
    const std::size_t length = request.find(header);
    return length == std::string::npos ||
           request.size() >= head + 4 + std::stoul(request.substr(length + header.size()));
}

} // namespace

RawServer::RawServer(std::vector<std::string> answers) : listener_(socket(AF_INET, SOCK_STREAM, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* const plain = reinterpret_cast<sockaddr*>(&address);
    if (bind(listener_, plain, size) != 0 || listen(listener_, 8) != 0 ||
        getsockname(listener_, plain, &size) != 0) {
        throw std::runtime_error("no port for the test's server");
    }
    port_ = ntohs(address.sin_port);
    thread_ = std::thread([this, answers = std::move(answers)] {
        for (const std::string& answer : answers) {
            serve(answer);
        }
    });
}

RawServer::~RawServer() {
    shutdown(listener_, SHUT_RDWR); // answers not yet fetched are not waited for
    if (thread_.joinable()) {
        thread_.join();
    }
    close(listener_);
}

std::string RawServer::url() const { return "http://127.0.0.1:" + std::to_string(port_); }

const std::vector<std::string>& RawServer::requests() {
    if (thread_.joinable()) {
        thread_.join();
    }
    return requests_;
}

void RawServer::serve(const std::string& answer) {
    const int peer = accept(listener_, nullptr, nullptr);
    if (peer < 0) {
        return;
    }
    std::string request;
    std::array<char, 4096> bytes{};
    while (!isWhole(request)) {
        const ssize_t count = recv(peer, bytes.data(), bytes.size(), 0);
        if (count <= 0) {
            break;
        }
        request.append(bytes.data(), static_cast<std::size_t>(count));
    }
    requests_.push_back(request);
    for (std::size_t sent = 0; sent < answer.size();) {
        const ssize_t count = send(peer, answer.data() + sent, answer.size() - sent, MSG_NOSIGNAL);
        if (count <= 0) {
            break;
        }
        sent += static_cast<std::size_t>(count);
    }
    shutdown(peer, SHUT_WR);
    while (recv(peer, bytes.data(), bytes.size(), 0) > 0) { // an earlier close might lose the answer
        continue;
    }
    close(peer);
}
