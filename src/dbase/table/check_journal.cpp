// Reads the journals of a table without changing anything.
#include "dbase/table/check_journal.h"

#include <algorithm>
#include <map>
#include <set>
#include <string>

#include "dbase/dbf/codepage.h"
#include "dbase/dbf/table_file.h"
#include "dbase/journal/journal.h"
#include "dbase/lock/locks.h"
#include "dbase/system/counted.h"
#include "dbase/system/error.h"
#include "dbase/table/recovery.h"

namespace dbase {

namespace {

constexpr std::size_t mostRows = 20;        // listed of each journal
constexpr std::size_t mostCharacters = 100; // of a row

using Rows = std::map<RecordNumber, std::string>;

/// The live rows of a journal by their numbers, each in its last state.
Rows lastRows(Journal& journal, std::size_t recordLength) {
    Rows rows;
    for (const JournalEntry& entry : journal.keptEntries()) {
        for (const RecordRun& run : entry.runs) {
            for (RecordNumber row = 0; row < run.rows; ++row) {
                rows[run.first + row].assign(run.after.data() + row * recordLength, recordLength);
            }
        }
    }
    std::erase_if(rows, [](const auto& row) { return row.second.front() == deletedMark; });
    return rows;
}

/// Removes the rows that a live record equals.
void dropStored(Rows& rows, const TableFile& records) {
    std::set<std::string_view> missing;
    for (const auto& [number, row] : rows) {
        missing.insert(row);
    }
    const RecordNumber count = records.recordCount();
    for (RecordNumber number = 1; number <= count && !missing.empty(); ++number) {
        const std::span<const char> bytes = records.record(number).bytes;
        missing.erase({bytes.data(), bytes.size()});
    }
    std::erase_if(rows, [&](const auto& row) { return !missing.contains(row.second); });
}

/// The values of a row that are not blank, for people.
std::string shown(const Schema& schema, const std::string& row) {
    std::string text;
    for (const Column& column : schema.columns) {
        std::string_view value(row.data() + column.offset, column.width);
        while (!value.empty() && (value.back() == ' ' || value.back() == '\0')) {
            value.remove_suffix(1);
        }
        value.remove_prefix(std::min(value.find_first_not_of(' '), value.size()));
        if (!value.empty() && text.size() < mostCharacters) {
            text += text.empty() ? "" : ", ";
            for (const char c : value.substr(0, mostCharacters)) {
                const auto byte = static_cast<unsigned char>(c);
                text += byte < ' ' || byte == 0x7F
                            ? "?"
                            : CodePage::ofDriver(schema.languageDriver).toUtf8(std::string_view(&c, 1));
            }
        }
    }
    return text;
}

void checkLeft(const TableFile& records, const File* index, CheckReport& report) {
    Journal journal(journalBeside(records.path()), records.schema());
    if (!journal.exists() || records.file().isLockedByOthers(presenceLock)) {
        return; // none, or that of the programs at work
    }
    const auto note = [&](const std::string& text) {
        report.note(records.path(), "diario",
                    text + " cuando se abra con permiso de escritura, o con \"ambcp reindexar\"");
    };
    if (journal.isOfOtherFiles(originOf(records), sessionOf(index))) {
        note("el diario que quedó es de otros ficheros, porque se ha recuperado una copia de la tabla; se "
             "apartará y se reharán los tags");
    } else if (journal.isOfAnotherStart() && !journal.keptEntries().empty()) {
        note("el equipo se paró con la tabla en uso; la tabla se recuperará");
    }
}

void checkSetAside(const TableFile& records, const std::string& path, CheckReport& report) {
    Journal journal(journalSetAside(path), records.schema());
    Rows rows = lastRows(journal, records.schema().recordLength);
    dropStored(rows, records);
    report.note(path, "diario apartado",
                rows.empty() ? "todas sus filas están en la tabla; puede borrarse"
                             : "guarda filas que no están en la tabla; bórrelo cuando no las necesite");
    std::size_t listed = 0;
    for (const auto& [number, row] : rows) {
        if (++listed > mostRows) {
            report.note(path, "diario apartado",
                        "y " + counted(rows.size() - mostRows, "fila más", "filas más"));
            break;
        }
        report.note(path, "registro " + std::to_string(number),
                    "no está en la tabla: " + shown(records.schema(), row));
    }
}

} // namespace

void checkJournals(const TableFile& records, const File* index, CheckReport& report) {
    const auto attempt = [&](const std::string& path, const auto& check) {
        try {
            check();
        } catch (const Error& error) { // the table may be right all the same
            report.note(path, "diario", error.what());
        }
    };
    attempt(records.path(), [&] { checkLeft(records, index, report); });
    for (const std::string& path : journalsSetAside(records.path())) {
        attempt(path, [&] { checkSetAside(records, path, report); });
    }
}

} // namespace dbase
