// Gathers the findings of a check, up to a reasonable number.
#pragma once

#include <string>
#include <utility>

#include "dbase/table/check.h"

namespace dbase {

class CheckReport {
public:
    explicit CheckReport(CheckResult& result) : result_(result) {}

    void add(const std::string& file, std::string place, std::string text) {
        if (result_.findings.size() >= most) {
            result_.truncated = true;
            return;
        }
        result_.findings.push_back({file, std::move(place), std::move(text)});
    }
    void note(const std::string& file, std::string place, std::string text) {
        result_.notes.push_back({file, std::move(place), std::move(text)});
    }
    [[nodiscard]] bool isFull() const { return result_.truncated; }

private:
    static constexpr std::size_t most = 200;
    CheckResult& result_;
};

} // namespace dbase
