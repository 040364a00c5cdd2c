// Rows of the sample's tables.
#include "tools/callejero/SampleRows.h"

#include <stdexcept>

#include "sample/SampleData.h"

namespace callejero {

std::vector<CsvRow> sampleRows(const std::string& table) {
    for (const ambrel::SampleFile& file : ambrel::tableFiles()) {
        if (file.name == table + ".csv") {
            return csvRows(loading::textSource(file.text()), table);
        }
    }
    throw std::logic_error("the sample has no " + table);
}

} // namespace callejero
