// Rows of POSTAL that are the users' own, found by municipality and street.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "dbase/dbf/schema.h"
#include "directory/DirectoryChange.h"

namespace ambrel::directory {

/// How many house numbers are within bounds, or within both.
[[nodiscard]] std::uint32_t numbersIn(const Bounds& bounds);
[[nodiscard]] std::uint32_t numbersShared(const Bounds& one, const Bounds& other);

/// How many of them some of the others have.
[[nodiscard]] std::uint32_t numbersCovered(const Bounds& bounds, std::span<const Bounds> others);

/// The same numbers with bounds of their side. Users' bounds may be missing, or of the other side: look-ups
/// find each odd number between those of the odd side, and so on.
[[nodiscard]] Bounds boundsOfSides(const Bounds& bounds);

/// Filled row by row; asked after finish().
class OwnStreets {
public:
    struct Row {
        PlaceCode place;
        dbase::RecordNumber record;
        std::uint64_t name; // a hash of it
    };

    void add(PlaceCode place, std::string_view name, dbase::RecordNumber record);
    void finish();

    /// Those of a street, and perhaps a few more: the name is to be compared again.
    [[nodiscard]] std::span<const Row> find(PlaceCode place, std::string_view name) const;
    [[nodiscard]] bool isEmpty() const { return rows_.empty(); }

private:
    std::vector<Row> rows_;
};

} // namespace ambrel::directory
