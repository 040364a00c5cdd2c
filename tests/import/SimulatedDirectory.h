// The street-directory service of a test: on loopback, and where the configuration says.
#pragma once

#include <memory>

#include "tools/callejero/Server.h"

/// While it is there, requests by Config's service come to it, whatever proxy the environment names. At its
/// end the test fails if one of them was not written as it must be.
class SimulatedDirectory {
public:
    /// Two provinces with a few municipalities, see the .cpp.
    SimulatedDirectory();
    explicit SimulatedDirectory(std::unique_ptr<const callejero::Directory> directory);
    ~SimulatedDirectory();
    SimulatedDirectory(const SimulatedDirectory&) = delete;
    SimulatedDirectory& operator=(const SimulatedDirectory&) = delete;

    callejero::Server* operator->() { return &server_; }

private:
    callejero::Server server_;
};
