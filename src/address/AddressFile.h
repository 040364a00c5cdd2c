// Whole files of addresses: reads CSV, judges each row, and writes it with what was found out about it.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "AmbrelExport.h"
#include "address/AddressColumns.h"
#include "address/AddressValidator.h"
#include "address/ValidatedRow.h"
#include "loading/csv_format.h"
#include "loading/text_source.h"

namespace ambrel {

/// A file of addresses: CSV with a heading.
struct AddressFileInput {
    loading::TextSource bytes;         // from its start
    std::string name;                  // what errors call it, in UTF-8
    std::optional<std::uint64_t> size; // in bytes; null if not known
};

/// Opens a file; "-" is standard input. Errors: loading::Failure.
[[nodiscard]] AMBREL_EXPORT AddressFileInput openAddressFile(const std::string& path);

/// One of several pieces of a file, counted from 1, which together are the whole.
struct AddressFilePart {
    unsigned number = 1, of = 1;
};

/// How a file is read and judged.
struct AddressFileOptions {
    std::string database = "DB";
    NamedColumns columns = {};
    std::optional<char> separator = {};                 // null: recognised
    std::optional<loading::TextEncoding> encoding = {}; // null: recognised
    ValidationOptions validation = {};                  // its memory is for all threads together
    unsigned threads = 0;                               // 0: as many as the machine has cores; 256 at most
    bool writesHeading = true;                          // parts other than the first never do
    AddressFilePart part = {};                          // of a file whose size is known
};

/// What the beginning of a file shows.
struct AddressFilePreview {
    loading::CsvFormat format = {};
    std::vector<std::string> names = {}; // of the columns, in UTF-8
    AddressColumnPlaces places = {};
    std::vector<std::vector<std::string>> rows = {}; // the first ones, in UTF-8
    /// Why validateAddressFile() would refuse it: a Spanish text, in UTF-8; empty if it would not.
    std::string problem = {};
};

/// Reads the beginning of a file. Errors: loading::Failure if it cannot be read at all.
[[nodiscard]] AMBREL_EXPORT AddressFilePreview previewAddressFile(const AddressFileInput& input,
                                                                  const AddressFileOptions& options = {},
                                                                  std::size_t rows = 20);

/// The rows by verdict.
struct AddressFileTotals {
    std::uint64_t rows = 0;
    std::array<std::uint64_t, verdictCount> verdicts{};
    bool wasCancelled = false;

    [[nodiscard]] std::uint64_t of(Verdict verdict) const {
        return verdicts.at(static_cast<std::size_t>(verdict));
    }
    [[nodiscard]] std::uint64_t settled() const {
        return of(Verdict::Corrected) + of(Verdict::Completed) + of(Verdict::Correct);
    }
};

/// How far a validation is.
struct AddressFileProgress {
    std::uint64_t rows;
    double share; // of the file, 0 to 1; negative if its size is not known
};

/// What to do with the results. All are called by the caller's own thread, and none needs to be set.
struct AddressFileHandlers {
    /// Receives the result, in the order of the file; a text ends with a line.
    std::function<void(std::string_view)> write = {};
    /// Receives the heading and the rows that are not settled.
    std::function<void(std::string_view)> writeUnsettled = {};
    /// Receives what was recognised, before the first row and after the tables were found.
    std::function<void(const AddressFilePreview&)> begin = {};
    /// Receives each row, in the order of the file; valid during the call.
    std::function<void(const ValidatedRow&)> row = {};
    /// Called several times a second; false cancels.
    std::function<bool(const AddressFileProgress&)> progress = {};
};

/// Judges every row of a file and writes it, byte for byte as it is, with validatedColumnNames after it. A
/// row that cannot be read is a verdict. A settled memory, whatever the size of the file. Errors:
/// loading::Failure (AddressColumnsError if the columns are not recognised), dbase::Error, anything that a
/// handler throws; what has been written by then ends with a line.
AMBREL_EXPORT AddressFileTotals validateAddressFile(const AddressFileInput& input,
                                                    const AddressFileOptions& options,
                                                    const AddressFileHandlers& handlers);

} // namespace ambrel
