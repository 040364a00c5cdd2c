#include "dbase/check.h"

#include "dbase/bytes.h"
#include "dbase/check_report.h"
#include "dbase/codec.h"
#include "dbase/databases.h"
#include "dbase/error.h"
#include "dbase/index_file.h"
#include "dbase/locks.h"
#include "dbase/table_file.h"

namespace dbase {

namespace {

void checkSize(const TableFile& records, CheckReport& report) {
    const std::uint64_t size = records.file().size();
    const std::uint64_t announced = records.announcedCount();
    const std::uint64_t needed =
        records.schema().headerLength + announced * std::uint64_t{records.schema().recordLength};
    if (size < needed) {
        report.add(records.path(), "cabecera",
                   "dice " + std::to_string(announced) + " registros y en el fichero caben " +
                       std::to_string(records.recordCount()));
    } else if (size > needed + 1) {
        report.add(records.path(), "final", "sobran " + std::to_string(size - needed - 1) + " bytes");
    }
}

bool isBlank(std::string_view raw) { return raw.find_first_not_of(" \0") == std::string_view::npos; }

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
        if (mark != ' ' && mark != '*' && mark != 0x1A) { // another engine's packing leaves 0x1A there
            report.add(records.path(), "registro " + std::to_string(number), "la marca de borrado no es ' ' ni '*'");
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

void checkIndexHeader(const TableFile& records, const IndexFile& index, CheckReport& report) {
    const UpdateStamp stamp = index.stamp();
    if (stamp.present && stamp.inUpdate) {
        report.add(index.path(), "cabecera", "un programa terminó mientras escribía; hay que reindexar");
    }
    if (index.languageDriver() != records.schema().languageDriver) {
        report.add(index.path(), "cabecera", "el byte de idioma no es el de la tabla: otros programas no usarían el índice");
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

void checkIndex(const TableFile& records, const std::string& path, CheckResult& result, CheckReport& report,
                const Progress& progress) {
    try {
        IndexFile index(openFile(path, OpenMode::ReadOnly), records.schema());
        const FileLock lock(index.file(), structureLock, LockKind::Shared);
        result.tags = index.tags().size();
        checkIndexHeader(records, index, report);
        try {
            index.settleOrders();
        } catch (const Error& error) {
            report.add(path, "orden", error.what());
        }
        checkTrees(records, index, report, progress);
    } catch (const Error& error) {
        if (error.code() != ErrorCode::BadIndex && error.code() != ErrorCode::TooLarge) {
            throw;
        }
        report.add(path, "índice", error.what());
    }
}

} // namespace

CheckResult checkTable(const std::string& tableFile, const Progress& progress) {
    CheckResult result;
    CheckReport report(result);
    try {
        TableFile records(openFile(tableFile, OpenMode::ReadOnly));
        result.records = records.recordCount();
        checkSize(records, report);
        checkRecords(records, report, progress);
        const std::optional<std::string> indexPath = findIndexFile(tableFile);
        if (indexPath.has_value() != records.schema().hasProductionIndex) {
            report.add(tableFile, "cabecera",
                       indexPath ? "no dice que haya índice y lo hay" : "dice que hay índice y falta el .MDX");
        }
        if (indexPath) {
            checkIndex(records, *indexPath, result, report, progress);
        }
    } catch (const Error& error) {
        if (error.code() != ErrorCode::BadTable && error.code() != ErrorCode::TooLarge) {
            throw;
        }
        report.add(tableFile, "cabecera", error.what());
    }
    return result;
}

} // namespace dbase
