// The simulated service.
#include "tools/callejero/Server.h"

#include <utility>

#include "tools/callejero/Service.h"

namespace callejero {

Server::Server(std::unique_ptr<const Directory> directory, int port, Log log)
    : Conduct(std::move(log)), service_(std::make_unique<Service>(std::move(directory), port, *this)) {}

Server::~Server() = default;

std::string Server::url() const { return "http://127.0.0.1:" + std::to_string(service_->port()); }

void Server::stop() { service_->stop(); }

} // namespace callejero
