// The simulated service.
#include "tools/callejero/Server.h"

#include "tools/callejero/Service.h"

namespace callejero {

Server::Server(std::unique_ptr<const Directory> directory, int port, Log log)
    : service_(std::make_unique<Service>(std::move(directory), port, std::move(log))) {}

Server::~Server() { stop(); }

std::string Server::url() const { return "http://127.0.0.1:" + std::to_string(service_->port()); }

void Server::setFault(Operation operation, Fault fault, const std::string& name) {
    addFault({.operation = operation, .name = name, .fault = fault});
}

void Server::addFault(const FaultRule& rule) { service_->addFault(rule); }

void Server::clearFaults() { service_->clearFaults(); }

void Server::release() { service_->release(); }

void Server::setDelay(std::chrono::milliseconds delay) { service_->setDelay(delay); }

std::vector<Request> Server::requests() const { return service_->requests(); }

std::vector<std::string> Server::complaints() const { return service_->complaints(); }

void Server::stop() { service_->stop(); }

} // namespace callejero
