// A workstation of its own: a process in which a controller adds and deletes streets and reports it.
#pragma once

#include <map>
#include <string>

#include <sys/types.h>

namespace postal_tests {

/// The work of a driver: adds `streets` rows and, with `deletes`, later deletes every third one.
struct DriverWork {
    int driver = 0; // number, part of its street names
    int streets = 0;
    bool deletes = false;
};

/// Starts the process at once, in the municipality MADRID of database "DB". Start it while this process has
/// no table open: open tables are shared with the child, locks included.
class StreetDriver {
public:
    explicit StreetDriver(const DriverWork& work);
    ~StreetDriver();
    StreetDriver(const StreetDriver&) = delete;
    StreetDriver& operator=(const StreetDriver&) = delete;

    /// Reads the driver's report until that many rows are stored. False if it ended before.
    bool awaitStored(std::size_t rows);
    /// kill -9.
    void kill() const;
    /// Reads the whole report and waits for the end; the exit code, or minus the signal that ended it.
    int join();

    /// Names of the streets whose storing was acknowledged and whose deletion was not, with their keys.
    [[nodiscard]] const std::map<std::string, std::string>& acknowledged() const { return acknowledged_; }
    /// The row that was being stored or deleted at the driver's last report; empty when it had finished.
    [[nodiscard]] const std::string& inFlight() const { return inFlight_; }
    [[nodiscard]] int refusals() const { return refusals_; }

private:
    bool readLine();

    pid_t pid_ = 0;
    int fromChild_ = -1;
    std::string unread_;
    std::map<std::string, std::string> acknowledged_;
    std::string inFlight_;
    std::size_t stored_ = 0;
    int refusals_ = 0;
};

} // namespace postal_tests
