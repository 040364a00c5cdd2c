// A second program at work on the same tables: a process of its own that runs steps one at a time.
#pragma once

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

#include "dbase/support/ChildProcess.h"

namespace dbase {

/// Start it while this process has no table open: open tables are shared with the child, locks included. The
/// steps work on the child's own copy of everything that they refer to. Between them, and after the last
/// one, it keeps its tables open and its locks.
class Workstation {
public:
    explicit Workstation(const std::vector<std::function<void()>>& steps)
        : process_([&](const test::ChildProcess::Link& link) {
              for (const auto& step : steps) {
                  link.await();
                  link.send(outcome(step));
              }
              link.await(); // throws when this side is gone
              return 0;
          }) {}

    /// Runs the next step there. Returns the text of the exception, or nothing.
    std::string step() {
        return outcome([this] {
            process_.tell();
            if (const std::string complaint = process_.receive(); !complaint.empty()) {
                throw std::runtime_error(complaint);
            }
        });
    }

private:
    /// The text of the exception that an operation throws, or nothing.
    static std::string outcome(const std::function<void()>& operation) {
        try {
            operation();
        } catch (const std::exception& error) {
            return error.what();
        }
        return {};
    }

    test::ChildProcess process_;
};

/// Throws unless the condition holds: failures of the steps reach the parent only as exceptions.
inline void require(bool condition, const char* what) {
    if (!condition) {
        throw std::runtime_error(what);
    }
}

} // namespace dbase
