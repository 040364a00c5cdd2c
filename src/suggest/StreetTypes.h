// Which street types a code stands for.
#pragma once

#include <string>
#include <string_view>

#include "suggest/Kept.h"
#include "suggest/WordLists.h"

namespace ambrel::suggest {

/// The codes of TIPO_VIA with both their names; while that table cannot be read, the codes of the word lists
/// alone.
class StreetTypes {
public:
    explicit StreetTypes(std::string database) : database_(std::move(database)) {}

    /// Reads the table if that has not been done; a table of types changes too rarely to follow it.
    void prepare();
    /// The types that a code stands for.
    [[nodiscard]] TypeSet ofCode(std::string_view code) const;
    /// The types that a code or a written name of a type stands for.
    [[nodiscard]] TypeSet ofText(std::string_view text) const;

private:
    std::string database_;
    TextMap<TypeSet> codes_;
    bool isRead_ = false;
};

} // namespace ambrel::suggest
