// Rows of a street table that verify themselves: every byte follows from two numbers that the row carries.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "dbase/dbf/schema.h"

namespace dbase {
class Dataset;
}

namespace resistance {

using Bytes = std::vector<char>;

/// Which row, and how often it was changed. Every second change moves the row in the trees.
struct StreetVersion {
    std::uint32_t serial = 0; // below 100,000,000; the row's CODIGO1
    std::uint32_t version = 0;
    bool erased = false;

    bool operator==(const StreetVersion&) const = default;
};

/// The values in the order of the columns of POSTAL, and the record that holds them.
[[nodiscard]] std::vector<std::string> streetValues(const StreetVersion& row);
[[nodiscard]] Bytes streetRecord(const dbase::Schema& schema, const StreetVersion& row);

/// The row that a record claims to be.
[[nodiscard]] StreetVersion rowOf(const dbase::Schema& schema, std::span<const char> record);
[[nodiscard]] std::string codeOf(std::uint32_t serial);

/// Through the fields of a dataset: sets all of the pending row; true if the current row is intact.
void setFields(dbase::Dataset& streets, const StreetVersion& row);
[[nodiscard]] bool isWhole(dbase::Dataset& streets);
/// The row that the current one claims to be.
[[nodiscard]] StreetVersion currentRow(dbase::Dataset& streets);

} // namespace resistance
