// Reads, judges and writes a file of addresses, block by block.
#include "address/AddressFile.h"

#include <algorithm>
#include <deque>
#include <memory>

#include <sys/stat.h>

#include "address/AddressRows.h"
#include "address/AddressWorkers.h"
#include "address/ValidatedColumns.h"
#include "dbase/dataset/dataset.h"
#include "loading/failure.h"

namespace ambrel {

namespace {

/// Enough that no thread waits, as a block has rows of many provinces.
constexpr std::size_t mostBlocks = 4;
constexpr std::chrono::milliseconds patience(100);

std::optional<std::uint64_t> fileSize(const std::string& path) {
    struct stat status {};
    const bool isFile = stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
    return isFile ? std::optional(static_cast<std::uint64_t>(status.st_size)) : std::nullopt;
}

std::size_t lineEndSize(std::string_view line) {
    return line.ends_with("\r\n") ? 2 : line.ends_with('\n') ? 1 : 0;
}

/// Errors: AddressColumnsError for a file that has been validated before.
void requireNoValidatedColumns(const std::vector<std::string>& names) {
    std::string found;
    for (const std::string_view name : validatedColumnNames) {
        if (std::ranges::find(names, name) != names.end()) {
            found += (found.empty() ? "" : ", ") + std::string(name);
        }
    }
    if (!found.empty()) {
        throw AddressColumnsError("ya tiene columnas que se llaman como las que se añaden (" + found +
                                  "); quítelas o cámbieles el nombre");
    }
}

AddressColumnPlaces findPlaces(const AddressRows& rows, const AddressFileOptions& options,
                               const std::string& name) {
    try {
        requireNoValidatedColumns(rows.names());
        return findAddressColumns(rows.names(), options.columns);
    } catch (const AddressColumnsError& error) {
        throw AddressColumnsError(name + ": " + error.what());
    }
}

/// Passes results on, with what has to be done at the start of a text.
class ResultWriter {
public:
    ResultWriter(const std::function<void(std::string_view)>& sink, const loading::CsvFormat& format)
        : sink_(sink), format_(format) {}

    void heading(const std::string& line) {
        if (!sink_) {
            return;
        }
        const std::size_t end = line.size() - lineEndSize(line);
        std::string text = line.substr(0, end);
        for (const std::string_view name : validatedColumnNames) {
            (text += format_.separator) += name;
        }
        if (format_.encoding == loading::TextEncoding::Utf16) {
            text.insert(0, "\uFEFF");
        }
        add(text + line.substr(end));
    }

    void row(const AddressBlock& block, const AddressRow& row) {
        if (!sink_) {
            return;
        }
        const std::string_view raw =
            std::string_view(block.text).substr(row.rawBegin, row.rawEnd - row.rawBegin);
        const std::size_t end = raw.size() - lineEndSize(raw);
        pending_ += raw.substr(0, end);
        pending_ += row.added;
        pending_ += raw.substr(end);
    }

    void flush() {
        if (!pending_.empty()) {
            add(pending_);
            pending_.clear();
        }
    }

private:
    void add(std::string_view text) const {
        if (format_.encoding == loading::TextEncoding::Utf16) {
            sink_(loading::utf16FromUtf8(text, format_.isBigEndian));
        } else {
            sink_(text);
        }
    }

    const std::function<void(std::string_view)>& sink_;
    loading::CsvFormat format_;
    std::string pending_;
};

/// One validation of a file.
class Validation {
public:
    Validation(const AddressFileInput& input, const AddressFileOptions& options,
               const AddressFileHandlers& handlers)
        : options_(options), handlers_(handlers), rows_(input, options),
          result_(handlers.write, rows_.format()), unsettled_(handlers.writeUnsettled, rows_.format()) {
        const AddressColumnPlaces places = findPlaces(rows_, options, input.name);
        rows_.setPlaces(places);
        requireTables();
        if (handlers.begin) {
            handlers.begin({.format = rows_.format(), .names = rows_.names(), .places = places});
        }
    }

    AddressFileTotals run() {
        if (options_.writesHeading && options_.part.number == 1) {
            result_.heading(rows_.heading());
            unsettled_.heading(rows_.heading());
        }
        std::deque<std::unique_ptr<AddressBlock>> blocks;
        AddressWorkers workers(options_, rows_.format());
        while (!totals_.wasCancelled) {
            while (blocks.size() < mostBlocks && !rows_.isAtEnd() && goesOn(workers)) {
                auto block = std::make_unique<AddressBlock>(rows_.nextBlock());
                workers.submit(*block);
                blocks.push_back(std::move(block));
            }
            if (blocks.empty()) {
                break;
            }
            while (goesOn(workers)) {
                if (workers.waitFor(*blocks.front(), patience)) {
                    write(*blocks.front());
                    blocks.pop_front();
                    break;
                }
            }
        }
        return totals_;
    }

private:
    /// A folder without them is refused before anything is written over an earlier result.
    void requireTables() const {
        for (const char* const table : {"MUNICIPI", "POSTAL"}) {
            dbase::Dataset(options_.database, table).open();
        }
    }

    /// Tells how far it is, and whether to go on.
    bool goesOn(const AddressWorkers& workers) {
        if (!totals_.wasCancelled && handlers_.progress) {
            const std::optional<std::uint64_t> size = rows_.size();
            const double share =
                !size ? -1.0
                : *size == 0
                    ? 1.0
                    : std::min(1.0, static_cast<double>(workers.bytes()) / static_cast<double>(*size));
            totals_.wasCancelled = !handlers_.progress({workers.rows(), share});
        }
        return !totals_.wasCancelled;
    }

    void write(const AddressBlock& block) {
        for (const AddressRow& row : block.rows) {
            result_.row(block, row);
            if (row.kind == AddressRow::Kind::Passed) {
                continue;
            }
            ++totals_.rows;
            ++totals_.verdicts.at(static_cast<std::size_t>(row.judged.verdict));
            if (!isSettled(row.judged.verdict)) {
                unsettled_.row(block, row);
            }
            if (handlers_.row) {
                handlers_.row({row.number, row.line, row.given, row.judged});
            }
        }
        result_.flush();
        unsettled_.flush();
    }

    const AddressFileOptions& options_;
    const AddressFileHandlers& handlers_;
    AddressRows rows_;
    ResultWriter result_, unsettled_;
    AddressFileTotals totals_;
};

} // namespace

AddressFileInput openAddressFile(const std::string& path) {
    if (path == "-") {
        const std::string name = "entrada estándar";
        return {loading::standardInput(name), name, std::nullopt};
    }
    return {loading::fileSource(path), path, fileSize(path)};
}

AddressFilePreview previewAddressFile(const AddressFileInput& input, const AddressFileOptions& options,
                                      std::size_t rows) {
    AddressRows reader(input, options);
    AddressFilePreview preview{.format = reader.format(), .names = reader.names()};
    try {
        preview.places = findPlaces(reader, options, input.name);
    } catch (const AddressColumnsError& error) {
        preview.problem = error.what();
    }
    while (preview.rows.size() < rows) {
        auto texts = reader.nextTexts();
        if (!texts) {
            break;
        }
        preview.rows.push_back(*std::move(texts));
    }
    return preview;
}

AddressFileTotals validateAddressFile(const AddressFileInput& input, const AddressFileOptions& options,
                                      const AddressFileHandlers& handlers) {
    return Validation(input, options, handlers).run();
}

} // namespace ambrel
