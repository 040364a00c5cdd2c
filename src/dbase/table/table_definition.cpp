// Creates empty tables, in given files or in a folder.
#include "dbase/table/table_definition.h"

#include <algorithm>

#include "dbase/dbf/dates.h"
#include "dbase/dbf/table_header.h"
#include "dbase/dbf/table_layout.h"
#include "dbase/lock/locks.h"
#include "dbase/mdx/index_file.h"
#include "dbase/system/error.h"
#include "dbase/table/empty_table.h"
#include "dbase/table/table_creation.h"
#include "dbase/table/table_replacement.h"

namespace dbase {

std::vector<bool> columnsWithTag(const Schema& schema, const std::vector<TagDefinition>& tags) {
    std::vector<bool> marked(schema.columns.size());
    for (const TagDefinition& tag : tags) {
        const Expression key = Expression::parse(tag.expression, schema, Dialect::Index);
        if (key.isPlainColumn()) {
            marked[key.segments().front().column] = true;
        }
    }
    return marked;
}

void writeEmptyTable(File& table, File* index, Schema schema, const std::string& name,
                     const std::vector<TagDefinition>& tags) {
    schema.hasProductionIndex = index != nullptr;
    completeLayout(schema, table.path());
    if (index != nullptr) {
        IndexFile::format(*index, schema, name, tags, UpdateStamp{true, false, 0, 2});
    }
    std::vector<char> bytes = encodeHeader(schema, todaysCounts(), columnsWithTag(schema, tags));
    bytes.push_back(endMark);
    table.write(0, bytes);
}

void makeEmptyTable(TableReplacement& replacement, const TableDefinition& definition) {
    Schema schema;
    schema.columns = definition.columns;
    schema.languageDriver = static_cast<std::uint8_t>(definition.languageDriver);
    const std::unique_ptr<File> table = replacement.makeTable();
    const std::unique_ptr<File> index = definition.tags.empty() ? nullptr : replacement.makeIndex();
    writeEmptyTable(*table, index.get(), schema, definition.name, definition.tags);
}

namespace {

[[noreturn]] void refuseExisting(const std::string& table) {
    throw Error(ErrorCode::Exists, table, "la tabla ya existe");
}

} // namespace

void createTable(const std::string& folder, const TableDefinition& definition, IfExists ifExists) {
    createTable(diskFolders(), folder, definition, ifExists);
}

void createTable(Folders& folders, const std::string& folder, const TableDefinition& definition,
                 IfExists ifExists) {
    const std::optional<std::string> existing = findTableFile(folders, folder, definition.name);
    if (existing &&
        ifExists == IfExists::Refuse) { // without a claim, which a read-only folder does not permit
        refuseExisting(*existing);
    }
    const LockWaits waits;
    const TableClaim claim(existing.value_or(folder + '/' + definition.name + ".DBF"), folders);
    createTable(claim, definition, ifExists);
}

void createTable(const TableClaim& claim, const TableDefinition& definition, IfExists ifExists) {
    if (ifExists == IfExists::Refuse && claim.folders().exists(claim.tableFile())) {
        refuseExisting(claim.tableFile());
    }
    TableReplacement files(claim);
    files.underOwnNames([&] {
        makeEmptyTable(files, definition);
        files.commit();
    });
}

} // namespace dbase
