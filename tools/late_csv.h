// A list on standard output that is mostly empty, such as that of rows left alone.
#pragma once

#include <string>
#include <vector>

#include "loading/csv.h"

namespace ambcp {

/// Writes CSV whose heading comes with its first row. A reader that has gone away does not end the work: the
/// rest of the list is dropped.
class LateCsv {
public:
    explicit LateCsv(std::vector<std::string> heading);

    void add(const std::vector<std::string>& row);
    void flush();

private:
    void write(const std::vector<std::string>& row);

    loading::CsvWriter csv_;
    std::vector<std::string> heading_; // empty once it is written
    bool isRead_ = true;
};

} // namespace ambcp
