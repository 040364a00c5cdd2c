// Writes the records of a dataset as CSV to standard output.
#pragma once

#include "dbase/dataset/dataset.h"
#include "dbase/dbf/codepage.h"
#include "loading/csv.h"

namespace ambcp {

enum class RecordNumbers { Hidden, Shown };

/// Writes the header row at once, then one row per call.
class RecordOutput {
public:
    RecordOutput(dbase::Dataset& table, RecordNumbers numbers);

    void writeCurrent();
    void flush() { csv_.flush(); }

private:
    dbase::Dataset& table_;
    const dbase::CodePage& page_;
    RecordNumbers numbers_;
    std::vector<dbase::Field*> fields_;
    loading::CsvWriter csv_;
};

} // namespace ambcp
