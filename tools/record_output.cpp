// Writes records as CSV.
#include "tools/record_output.h"

#include <array>
#include <charconv>

#include <unistd.h>

#include "loading/row_conversion.h"

namespace ambcp {

RecordOutput::RecordOutput(dbase::Dataset& table, RecordNumbers numbers)
    : table_(table), page_(dbase::CodePage::ofDriver(table.schema().languageDriver)), numbers_(numbers),
      fields_(table.fields()), csv_(STDOUT_FILENO) {
    if (numbers_ == RecordNumbers::Shown) {
        csv_.field("_REG");
    }
    for (const dbase::Field* field : fields_) {
        csv_.field(page_.toUtf8(field->name()));
    }
    csv_.endRecord();
}

void RecordOutput::writeCurrent() {
    if (numbers_ == RecordNumbers::Shown) {
        std::array<char, 10> digits;
        const auto end = std::to_chars(digits.begin(), digits.end(), table_.recordNumber()).ptr;
        csv_.field({digits.data(), static_cast<std::size_t>(end - digits.data())});
    }
    for (const dbase::Field* field : fields_) {
        loading::writeValue(csv_, *field, page_);
    }
    csv_.endRecord();
}

} // namespace ambcp
