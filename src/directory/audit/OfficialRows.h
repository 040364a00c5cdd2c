// Which street of the official directory a row of POSTAL comes from.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "dbase/dataset/dataset.h"

namespace ambrel::directory {

/// Looks into PROCEDEN, which may be missing, when it is first asked.
class OfficialRows {
public:
    explicit OfficialRows(std::string database) : database_(std::move(database)) {}

    /// What the office calls the street; empty for a row that no edition brought. Errors: dbase::Error.
    [[nodiscard]] std::string streetOf(std::string_view key);

private:
    std::string database_;
    bool isOpened_ = false;
    std::unique_ptr<dbase::Dataset> rows_; // null if there is no such table
};

} // namespace ambrel::directory
