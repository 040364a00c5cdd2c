// A test's street-directory service, on loopback, which the configuration points to.
#pragma once

#include <memory>

#include "tools/callejero/Server.h"

/// While it exists, it receives the requests of Config's service, whatever proxy the environment names. Its
/// destruction fails the test if one of them was not written as required.
class SimulatedDirectory {
public:
    /// Has two provinces with a few municipalities, see the .cpp.
    SimulatedDirectory();
    explicit SimulatedDirectory(std::unique_ptr<const callejero::Directory> directory);
    ~SimulatedDirectory();
    SimulatedDirectory(const SimulatedDirectory&) = delete;
    SimulatedDirectory& operator=(const SimulatedDirectory&) = delete;

    callejero::Server* operator->() { return &server_; }

private:
    callejero::Server server_;
};
