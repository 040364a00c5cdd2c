// Checks a table: its header, its records, the headers of its index.
#include "dbase/table/check.h"

#include <algorithm>
#include <filesystem>

#include "dbase/dbf/codec.h"
#include "dbase/lock/locks.h"
#include "dbase/mdx/index_layout.h"
#include "dbase/system/bytes.h"
#include "dbase/system/counted.h"
#include "dbase/system/databases.h"
#include "dbase/system/error.h"
#include "dbase/system/folders.h"
#include "dbase/table/check_journal.h"
#include "dbase/table/check_report.h"
#include "dbase/table/check_tree.h"
#include "dbase/table/exchange_completion.h"
#include "dbase/table/recovery.h"
#include "dbase/table/table_names.h"

namespace dbase {

namespace {

void checkSize(const TableFile& records, CheckReport& report) {
    const std::uint64_t size = records.file().size();
    const std::uint64_t announced = records.announcedCount();
    const std::uint64_t needed =
        records.schema().headerLength + announced * std::uint64_t{records.schema().recordLength};
    if (size < needed) {
        const RecordNumber held = records.recordCount();
        report.add(records.path(), "cabecera",
                   "dice " + counted(announced, "registro", "registros") + " y en el fichero " +
                       (held == 1 ? "cabe " : "caben ") + std::to_string(held));
    } else if (size > needed + 1) {
        const std::uint64_t extra = size - needed - 1;
        report.add(records.path(), "final",
                   (extra == 1 ? "sobra " : "sobran ") + counted(extra, "byte", "bytes"));
    }
}

bool isBlank(std::string_view raw) {
    return raw.find_first_not_of(std::string_view(" \0", 2)) == std::string_view::npos;
}

bool isPlausible(std::string_view raw, const Column& column) {
    if (isBlank(raw)) {
        return true;
    }
    switch (column.type) {
    case ColumnType::Numeric:
    case ColumnType::Float:
        return decodeNumber(raw) || raw.find_first_not_of('*') == std::string_view::npos;
    case ColumnType::Logical:
        return decodeLogical(raw) || raw == "?";
    case ColumnType::Date:
        return decodeDate(raw) || raw == "00000000";
    case ColumnType::Character:
    case ColumnType::Memo:
        break;
    }
    return true;
}

void checkRecords(const TableFile& records, CheckReport& report, const Progress& progress) {
    const RecordNumber count = records.recordCount();
    for (RecordNumber number = 1; number <= count && !report.isFull(); ++number) {
        const RecordView record = records.record(number);
        const char mark = record.bytes[0];
        if (mark != ' ' && mark != '*' && mark != endMark) { // packing by another engine leaves an end mark
            report.add(records.path(), "registro " + std::to_string(number),
                       "la marca de borrado no es ' ' ni '*'");
        }
        for (const Column& column : records.schema().columns) {
            if (!isPlausible(record.raw(column), column)) {
                report.add(records.path(), "registro " + std::to_string(number) + ", columna " + column.name,
                           "el contenido no es del tipo de la columna");
            }
        }
        if (progress && number % 65536 == 0) {
            progress(number, count);
        }
    }
}

// First byte in which stored bytes differ from those that we would write; the size if there is none.
std::size_t firstDifference(std::span<const char> stored, std::span<const char> fresh,
                            std::initializer_list<std::pair<std::size_t, std::size_t>> ignored) {
    for (std::size_t i = 0; i < fresh.size(); ++i) {
        const bool counts = std::none_of(ignored.begin(), ignored.end(), [&](const auto& range) {
            return i >= range.first && i < range.first + range.second;
        });
        if (counts && stored[i] != fresh[i]) {
            return i;
        }
    }
    return fresh.size();
}

// Headers that only we have written must be exactly as we write them: other engines use bytes that ours never
// reads.
void checkOwnBytes(const TableFile& records, const IndexFile& index, CheckReport& report) {
    const std::vector<char> head = index.freshHead(records.schema());
    std::vector<char> stored(head.size());
    index.file().read(0, stored);
    const std::size_t at = firstDifference(stored, head,
                                           {{mdx::tableName, mdx::tableNameSize},
                                            {mdx::updated, 3},
                                            {mdx::pageCount, 4},
                                            {mdx::languageDriver, 1}});
    if (at < head.size()) {
        report.add(index.path(), "cabecera, byte " + std::to_string(at),
                   "no es el que corresponde a estos tags");
    }
    for (const Tag& tag : index.tags()) {
        const std::vector<char> header = index.freshTagHeader(tag);
        std::vector<char> buffer;
        const std::span<const char> block(index.block(tag.headerPage, buffer), index.blockSize());
        const std::size_t difference = firstDifference(block, header, {});
        if (difference < header.size()) {
            report.add(index.path(),
                       "tag " + tag.definition.name + ", cabecera, byte " + std::to_string(difference),
                       "no es el que corresponde a este tag");
        }
    }
}

void checkKnownTags(const IndexFile& index, const std::vector<TagDefinition>& knownTags,
                    CheckReport& report) {
    for (const TagDefinition& known : knownTags) {
        if (index.findTag(known.name) == nullptr) {
            report.add(index.path(), "tags", "falta el tag " + known.name);
        }
    }
}

void checkIndexHeader(const TableFile& records, const IndexFile& index, CheckReport& report) {
    const UpdateStamp stamp = index.stamp();
    if (stamp.present && stamp.inUpdate) {
        report.add(
            index.path(), "cabecera",
            stamp.isHalfChanged
                ? "un programa terminó mientras cambiaba la tabla, y nada dice ya qué le faltaba: puede "
                  "tener filas de antes y de después; restaure una copia de seguridad"
                : "un programa terminó mientras escribía; el siguiente que pueda escribir rehace el "
                  "índice");
    } else if (index.hasOwnHead()) {
        checkOwnBytes(records, index, report);
    }
    if (index.languageDriver() != records.schema().languageDriver) {
        report.add(index.path(), "cabecera",
                   "el byte de idioma no es el de la tabla: otros programas no usarían el índice");
    }
    if (index.announcedPages() != index.pageCount() || index.file().size() % pageBytes != 0) {
        report.add(index.path(), "cabecera",
                   "dice " + std::to_string(index.announcedPages()) + " páginas y el fichero tiene " +
                       std::to_string(index.pageCount()));
    }
    for (const Tag& tag : index.tags()) {
        if (!tag.isUnderstood()) {
            report.add(index.path(), "tag " + tag.definition.name, tag.problem + "; no se puede comprobar");
        }
    }
}

void checkWhole(const File& file, CheckReport& report) {
    if (file.viewIsTorn()) {
        report.add(file.path(), "final", "otro programa ha cortado el fichero mientras se comprobaba");
    }
}

void checkIndex(const TableFile& records, const std::string& path,
                const std::vector<TagDefinition>& knownTags, CheckResult& result, CheckReport& report,
                const Progress& progress) {
    try {
        IndexFile index(openFile(path, OpenMode::ReadOnly), records.schema());
        result.tags = index.tags().size();
        checkIndexHeader(records, index, report);
        checkKnownTags(index, knownTags, report);
        try {
            index.determineOrders();
        } catch (const Error& error) {
            report.add(path, "orden", error.what());
        }
        checkTrees(records, index, report, progress);
        checkWhole(index.file(), report);
    } catch (const Error& error) {
        if (error.code() != ErrorCode::BadIndex && error.code() != ErrorCode::TooLarge) {
            throw;
        }
        report.add(path, "índice", error.what());
    }
}

void checkAll(const TableFile& records, const std::optional<std::string>& indexPath,
              const std::vector<TagDefinition>& knownTags, CheckResult& result, CheckReport& report,
              const Progress& progress) {
    result.records = records.recordCount();
    checkSize(records, report);
    checkRecords(records, report, progress);
    if (indexPath.has_value() != records.schema().hasProductionIndex) {
        report.add(records.path(), "cabecera",
                   indexPath ? "no dice que haya índice y lo hay" : "dice que hay índice y falta el .MDX");
    } else if (!indexPath && !knownTags.empty()) {
        report.add(records.path(), "cabecera", "falta el .MDX con los tags de esta tabla");
    }
    if (indexPath) {
        checkIndex(records, *indexPath, knownTags, result, report, progress);
    }
}

// Its index may be another table's, or records and index the old ones. `index`: null if there is none.
bool isAmidExchange(const TableFile& records, const File* index) {
    return (index == nullptr || stampOf(index).inUpdate) && isInExchange(records.path(), diskFolders());
}

// Nothing if it was replaced meanwhile: then one file may be the old table's and the other one the new
// table's. A program that replaces a table holds the opening lock while names and marks change.
std::optional<CheckResult> tryCheck(const std::string& tableFile, const Progress& progress,
                                    const std::vector<TagDefinition>& knownTags) {
    CheckResult result;
    CheckReport report(result);
    try {
        std::unique_ptr<File> file = openFile(tableFile, OpenMode::ReadOnly);
        holdLock(*file, openingLock, LockKind::Shared);
        TableFile records(std::move(file));
        const std::optional<std::string> indexPath = findIndexFile(tableFile);
        // Opened separately, so that the lock outlives the index even if that is damaged.
        const std::unique_ptr<File> locked = openFile(indexPath.value_or(tableFile), OpenMode::ReadOnly);
        TableNames names(diskFolders(), records.file(), locked.get());
        result.isChecked = !isAmidExchange(records, indexPath ? locked.get() : nullptr);
        records.file().unlock(openingLock);
        if (!names.leadHere()) {
            return std::nullopt;
        }
        if (!result.isChecked) {
            report.note(tableFile, "sustitución",
                        "un programa terminó mientras sustituía varias tablas a la vez; el cambio se "
                        "termina al abrir una de ellas, y entonces se puede comprobar");
            return result;
        }
        StructureLock::Holders holders;
        if (indexPath && records.file().isRemote()) {
            holders.exchanged = &records.file();
        }
        holdLock(*locked, loadingLock, LockKind::Shared); // or rows that do not count yet would seem too many
        const StructureLock lock(*locked, holders, LockKind::Shared);
        records.forgetSize(); // it was queried before the lock
        checkAll(records, indexPath, knownTags, result, report, progress);
        checkJournals(records, indexPath ? locked.get() : nullptr, report);
        checkWhole(records.file(), report);
        if (!result.findings.empty() && (records.file().isLockedByOthers(openingLock) || !names.leadHere())) {
            return std::nullopt;
        }
    } catch (const Error& error) {
        if (error.code() != ErrorCode::BadTable && error.code() != ErrorCode::TooLarge) {
            throw;
        }
        report.add(tableFile, "cabecera", error.what());
    }
    return result;
}

} // namespace

CheckResult checkTable(const std::string& path, const Progress& progress,
                       const std::vector<TagDefinition>& knownTags) {
    // The index and the journal of a link lie beside the table that it leads to.
    const std::string tableFile = std::filesystem::is_symlink(path) ? diskFolders().realPath(path) : path;
    const LockWaits waits;
    while (true) {
        if (std::optional<CheckResult> result = tryCheck(tableFile, progress, knownTags)) {
            return *std::move(result);
        }
    }
}

} // namespace dbase
