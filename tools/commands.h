// The subcommands: their options, and the functions that carry them out.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ambcp {

/// Exit codes of the program.
enum ExitCode : int {
    done = 0,
    negative = 1, // the answer to the question is no
    failed = 2,   // the reason is on standard error
};

struct CreateOptions {
    std::string folder;
    bool withSample = false;
    bool replaces = false;
};

struct LoadOptions {
    std::string folder, table;
    std::string file; // "-": standard input
    std::string separator = ",";
    std::string encoding = "utf-8";
    bool replaces = false;
};

struct ListOptions {
    std::string folder, table;
    std::string tag; // empty: the order of the records
    std::string filter;
    std::optional<std::string> from;
    std::optional<std::uint64_t> most;
    bool withRecordNumber = false;
};

struct FindOptions {
    std::string folder, table, tag;
    std::vector<std::string> pairs; // FIELD=VALUE
    bool takesNearest = false;
};

struct AddressOptions {
    std::string folder, municipality, province, ineCode, streetType, street, number;
};

struct SuggestOptions {
    std::string folder, municipality, province, street, type;
    std::string file; // of queries; "-": standard input; empty: the one given by the other options
    std::optional<std::uint64_t> most;
};

struct OverviewOptions {
    std::vector<std::string> files; // of the official street directory, packed or not
};

struct DirectoryLoadOptions {
    std::string folder;
    std::string stretches, streets, pseudoStreets, units,
        municipalities;                 // files; the last three may be empty
    std::vector<std::string> provinces; // 01 to 52; none: all
    std::string opening = "extremos";   // of ranges: no, extremos, huecos
    bool isTrial = false;
    bool takesLosses = false;      // of so many rows that a file may be cut
    std::string report, conflicts; // HTML and CSV; empty: none
    std::string undoFile;          // empty: in the folder
    bool keepsNoUndo = false;
};

struct ReviewOptions {
    std::string folder, table; // empty: both tables
    std::string output;        // of the findings; empty: standard output
    std::string report;        // HTML; empty: none
    std::string repairs;       // classes to be mended; empty: none
    std::string undoFile;      // empty: beside the tables
    bool writes = false;       // otherwise a dry run
};

struct FolderOptions {
    std::string folder;
};

struct UndoOptions {
    std::string file;
    std::string folder; // of the tables; empty: where they were
};

struct ValidateOptions {
    std::string folder;
    std::string file;    // "-": standard input
    std::string output;  // empty: standard output
    std::string columns; // KEY=NAME,…
    double threshold = 0.90;
    std::string unsettled, report;   // files; empty: none
    unsigned threads = 0;            // 0: one a core
    std::string separator, encoding; // empty: recognised
    bool hidesHeading = false;
    std::string part; // I/N; empty: the whole
    // --- For a table instead of a file.
    std::string table;    // empty: a file
    std::string fill;     // PART or PART=COLUMN,…; empty: nothing is changed
    std::string key;      // COLUMN,… that no two rows share; empty: what the table shows
    std::string undoFile; // empty: beside the table
};

/// For one table, or for all tables of the folder when its name is empty.
struct TablesOptions {
    std::string folder, table;
};

// Texts are UTF-8. Each writes to standard output and returns the exit code of the program. Errors: Failure,
// dbase::Error and OutputClosed.
[[nodiscard]] ExitCode crear(const CreateOptions& options);
[[nodiscard]] ExitCode cargar(const LoadOptions& options);
[[nodiscard]] ExitCode listar(const ListOptions& options);
[[nodiscard]] ExitCode buscar(const FindOptions& options);
[[nodiscard]] ExitCode direccion(const AddressOptions& options);
[[nodiscard]] ExitCode sugerir(const SuggestOptions& options);
[[nodiscard]] ExitCode validar(const ValidateOptions& options);
[[nodiscard]] ExitCode validarTabla(const ValidateOptions& options);
[[nodiscard]] ExitCode comprobar(const TablesOptions& options);
[[nodiscard]] ExitCode revisar(const ReviewOptions& options);
[[nodiscard]] ExitCode reindexar(const TablesOptions& options);
[[nodiscard]] ExitCode compactar(const TablesOptions& options);
[[nodiscard]] ExitCode deshacer(const UndoOptions& options);
[[nodiscard]] ExitCode callejeroCargar(const DirectoryLoadOptions& options);
[[nodiscard]] ExitCode callejeroVer(const OverviewOptions& options);
[[nodiscard]] ExitCode candados(const FolderOptions& options);

} // namespace ambcp
