// Generated rows of a street directory, the same for us and for every rival.
#pragma once

#include <cstdint>
#include <string>

namespace bench {

struct PostalRow {
    std::string codigo1;   // 8 digits, unique
    std::string provincia; // 2
    std::string capital;   // 1
    std::string tipoVia;   // 2
    std::string via;       // up to 45
    int imparIni, imparFin, parIni, parFin;
    std::string codPostal; // 5
    std::string municipi;
    std::string codIne; // 5
};

/// Row `number` of the directory, 0-based; any number gives a row. Rows come in no tag's order.
[[nodiscard]] PostalRow postalRow(std::uint32_t number);

/// Number of rows in the tables.
inline std::uint32_t rowCount = 1'500'000;

/// The folder for everything that the run writes.
inline std::string workFolder;

/// Search number `i` of a run: an existing street, or a prefix of one as a user would have typed it.
struct PostalSearch {
    std::string provincia, capital, via, tipoVia;
};
[[nodiscard]] PostalSearch postalSearch(std::uint32_t i);

} // namespace bench
