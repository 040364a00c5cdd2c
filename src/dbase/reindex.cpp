// Rebuilding a table's index from outside, also one that cannot be opened any more.

#include <optional>

#include "dbase/check.h"
#include "dbase/databases.h"
#include "dbase/error.h"
#include "dbase/table.h"
#include "dbase/table_definition.h"

namespace dbase {

namespace {

std::string baseName(const std::string& path) {
    const std::size_t slash = path.rfind('/') + 1;
    return path.substr(slash, path.rfind('.') - slash);
}

// The tag definitions that can still be read from an index; empty when it is not even that.
std::vector<TagDefinition> readableTags(const std::string& indexPath, const Schema& schema) {
    std::vector<TagDefinition> tags;
    try {
        const IndexFile index(openFile(indexPath, OpenMode::ReadOnly), schema);
        for (const Tag& tag : index.tags()) {
            if (!tag.isUnderstood()) {
                throw Error(ErrorCode::BadExpression, indexPath, tag.problem);
            }
            tags.push_back(tag.definition);
        }
    } catch (const Error& error) {
        if (error.code() != ErrorCode::BadIndex) {
            throw;
        }
        tags.clear();
    }
    return tags;
}

} // namespace

void reindexTable(const std::string& tableFile, const std::vector<TagDefinition>& fallbackTags,
                  const Progress& progress) {
    std::unique_ptr<File> file = openFile(tableFile, OpenMode::ReadWrite);
    holdLock(*file, presenceLock, LockKind::Shared);
    TableFile records(std::move(file));
    const std::optional<std::string> existing = findIndexFile(tableFile);
    std::vector<TagDefinition> tags;
    if (existing) {
        tags = readableTags(*existing, records.schema());
    }
    const bool isReadable = !tags.empty();
    if (tags.empty()) {
        tags = fallbackTags;
    }
    if (tags.empty()) {
        throw Error(ErrorCode::BadIndex, tableFile,
                    "no hay índice del que tomar los tags y no se conoce esta tabla; no se ha cambiado nada");
    }
    const std::string indexPath = existing.value_or(tableFile.substr(0, tableFile.rfind('.')) + ".MDX");
    std::unique_ptr<File> index = openFile(indexPath, existing ? OpenMode::ReadWrite : OpenMode::Create);
    std::optional<IndexFile> trees; // outlives the lock on its file
    const FileLock lock(*index, structureLock, LockKind::Exclusive);
    if (!isReadable) {
        IndexFile::format(*index, records.schema(), baseName(tableFile), tags, UpdateStamp{true, true, 0, 1});
    }
    trees.emplace(std::move(index), records.schema());
    rebuildTrees(records, *trees, progress);
    records.dropBehind(records.recordCount());
    records.file().sync();
    trees->file().sync();
}

} // namespace dbase
