// The whole names of streets that were too long for POSTAL.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "dbase/dataset/dataset.h"

namespace ambrel {

/// The official directory has names that POSTAL holds only shortened; PROCEDEN, the table beside it, keeps
/// the whole ones. Texts in Windows-1252.
class ShortenedNames {
public:
    /// `database`: the name under which the folder of the tables is registered.
    explicit ShortenedNames(std::string database) : database_(std::move(database)) {}

    /// Whether the row of POSTAL with a key was shortened from exactly this name. Opens PROCEDEN at the first
    /// question, if there is one. Errors: dbase::Error.
    [[nodiscard]] bool isFrom(std::string_view key, std::string_view name);

private:
    void open();

    std::string database_;
    bool isOpened_ = false;
    std::optional<dbase::Dataset> table_; // null where nothing is known
    dbase::Field *key_ = nullptr, *isShortened_ = nullptr, *name_ = nullptr;
};

/// What the shortened form of a name surely begins with in POSTAL.
[[nodiscard]] std::string beginningOfShortened(std::string_view name);

} // namespace ambrel
