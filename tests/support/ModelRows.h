// MODELO, the table of the random tests: its columns and tags, the model's view of them, and random
// rows and keys.
#pragma once

#include <random>
#include <string>
#include <utility>
#include <vector>

#include "dbase/dataset/dataset.h"
#include "dbase/table/table_definition.h"
#include "support/TableModel.h"

namespace ambrel::test {

/// What distinguishes one run from another.
struct ModelShape {
    const char* name;
    unsigned blockPages;         // of 512 bytes: one holds four of the widest keys
    unsigned codes, nameLetters; // number of different ones: few make long runs of equal keys
    bool hasConditions;          // tags with a FOR condition need blocks of two pages
};

/// The same tags on both sides, the model's with one more before them: the order of the records in the file.
[[nodiscard]] dbase::TableDefinition modelDefinition(const ModelShape& shape);
[[nodiscard]] std::vector<ModelTag> modelTags(const ModelShape& shape);

/// A row's values in the order of the columns, as fields return them.
[[nodiscard]] std::vector<std::string> textsOf(const ModelRow& row);
/// Sets the fields of the pending row.
void setFields(dbase::Dataset& table, const ModelRow& row);

struct NamedFilter {
    const char* text;
    std::function<bool(const ModelRow&)> test;
};
[[nodiscard]] const std::vector<NamedFilter>& modelFilters();

/// Draws at random; the same from the same seed.
class Chance {
public:
    explicit Chance(unsigned seed) : random_(seed) {}

    /// 0 to limit - 1.
    [[nodiscard]] unsigned below(unsigned limit) { return static_cast<unsigned>(random_() % limit); }
    [[nodiscard]] bool oneIn(unsigned many) { return below(many) == 0; }
    [[nodiscard]] ModelRow row(const ModelShape& shape);
    /// The key of a row, or its leading part, for a dataset on the tag and for the model.
    [[nodiscard]] std::pair<dbase::Key, std::string> key(const ModelTag& tag, const ModelRow& row);

private:
    std::mt19937 random_;
};

} // namespace ambrel::test
