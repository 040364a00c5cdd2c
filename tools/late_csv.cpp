// Writes a list that is mostly empty.
#include "tools/late_csv.h"

#include <utility>

#include <unistd.h>

namespace ambcp {

LateCsv::LateCsv(std::vector<std::string> heading) : csv_(STDOUT_FILENO), heading_(std::move(heading)) {}

void LateCsv::add(const std::vector<std::string>& row) {
    if (!heading_.empty()) {
        write(std::exchange(heading_, {}));
    }
    write(row);
}

void LateCsv::flush() {
    try {
        if (isRead_) {
            csv_.flush();
        }
    } catch (const loading::OutputClosed&) {
        isRead_ = false;
    }
}

void LateCsv::write(const std::vector<std::string>& row) {
    try {
        for (const std::string& value : row) {
            if (isRead_) {
                csv_.field(value);
            }
        }
        if (isRead_) {
            csv_.endRecord();
        }
    } catch (const loading::OutputClosed&) {
        isRead_ = false;
    }
}

} // namespace ambcp
