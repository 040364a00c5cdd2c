// Rebuilds a table's index from outside, even if it can no longer be opened.

#include <algorithm>
#include <iterator>
#include <optional>

#include "dbase/lock/locks.h"
#include "dbase/mdx/index_rebuild.h"
#include "dbase/system/databases.h"
#include "dbase/system/error.h"
#include "dbase/system/paths.h"
#include "dbase/table/check.h"
#include "dbase/table/empty_table.h"
#include "dbase/table/exchange_completion.h"
#include "dbase/table/recovery.h"
#include "dbase/table/replaced_files.h"
#include "dbase/table/table_definition.h"
#include "dbase/table/table_names.h"

namespace dbase {

namespace {

struct ReadableTags {
    std::vector<TagDefinition> tags;
    std::string problem; // why there may have been more; empty if these are all
    ErrorCode code = ErrorCode::BadIndex;
};

ReadableTags readTags(const std::string& indexPath, const Schema& schema) {
    ReadableTags result;
    try {
        const IndexFile index(openFile(indexPath, OpenMode::ReadOnly), schema);
        for (const Tag& tag : index.tags()) {
            if (tag.isUnderstood()) {
                result.tags.push_back(tag.definition);
            } else {
                result.problem = tag.problem;
                result.code = ErrorCode::BadExpression;
            }
        }
    } catch (const Error& error) {
        if (error.code() != ErrorCode::BadIndex) {
            throw;
        }
        result.problem = error.what();
    }
    return result;
}

// A table known to the caller gets at least the tags that the caller names, whatever is left of them; tags
// that can be read stay.
std::vector<TagDefinition> completed(const std::vector<TagDefinition>& readable,
                                     const std::vector<TagDefinition>& known) {
    const auto named = [](const std::vector<TagDefinition>& tags, const std::string& name) {
        return std::find_if(tags.begin(), tags.end(),
                            [&](const TagDefinition& tag) { return tag.name == name; });
    };
    std::vector<TagDefinition> result;
    for (const TagDefinition& tag : known) {
        const auto read = named(readable, tag.name);
        result.push_back(read == readable.end() ? tag : *read);
    }
    // An unknown tag with the expression of a known one is that tag with a damaged name.
    std::copy_if(readable.begin(), readable.end(), std::back_inserter(result), [&](const TagDefinition& tag) {
        return std::none_of(known.begin(), known.end(), [&](const TagDefinition& other) {
            return other.name == tag.name || other.expression == tag.expression;
        });
    });
    return result;
}

// The tags that the table will have; refuses if they are not all known.
std::vector<TagDefinition> tagsOf(const std::string& tableFile, const ReadableTags& readable,
                                  const std::vector<TagDefinition>& known) {
    if (known.empty() && (readable.tags.empty() || !readable.problem.empty())) {
        throw Error(
            ErrorCode::BadIndex, tableFile,
            "no se conocen los tags de esta tabla y no se pueden leer todos de su índice; no se ha cambiado "
            "nada" +
                (readable.problem.empty() ? std::string() : ": " + readable.problem));
    }
    return completed(readable.tags, known);
}

/// The tags that a table will have.
struct WantedTags {
    std::vector<TagDefinition> tags;
    bool areThere = false; // these and no others, in an index that can be read
};

// Nothing has been created or changed yet if they are refused.
WantedTags wantedTags(const std::string& tableFile, const std::optional<std::string>& index,
                      const Schema& schema, const std::vector<TagDefinition>& known) {
    const ReadableTags readable = index ? readTags(*index, schema) : ReadableTags{};
    WantedTags wanted{.tags = tagsOf(tableFile, readable, known)};
    wanted.areThere =
        readable.problem.empty() && std::ranges::is_permutation(wanted.tags, readable.tags, {},
                                                                &TagDefinition::name, &TagDefinition::name);
    if (!wanted.areThere) {
        IndexFile::checkTags(tableFile, schema, wanted.tags);
    }
    return wanted;
}

const Column& keyColumn(const Schema& schema, const std::vector<TagDefinition>& tags) {
    std::vector<Expression> keys;
    for (const TagDefinition& tag : tags) {
        keys.push_back(Expression::parse(tag.expression, schema, Dialect::Index));
    }
    return identifyingColumn(schema, keys);
}

// With the table's owner, group and permissions, and never through a link that somebody has planted.
std::unique_ptr<File> newIndex(const std::string& tableFile) {
    const std::string path = withExtension(tableFile, ".MDX");
    std::unique_ptr<File> file = diskFolders().createCompanion(path, tableFile);
    if (!file) {
        throw Error(ErrorCode::Exists, path, "ya existe, y no es un fichero de datos");
    }
    return file;
}

// Keeps its opening lock until the file is closed.
std::unique_ptr<File> openForOurselves(const std::string& tableFile) {
    while (true) {
        std::unique_ptr<File> file = openFile(tableFile, OpenMode::ReadWrite);
        holdLock(*file, openingLock, LockKind::Exclusive);
        if (!TableNames(diskFolders(), *file, nullptr).leadHere()) {
            continue; // it was replaced while we waited
        }
        if (!isInExchange(tableFile, diskFolders(), file->isRemote())) {
            return file;
        }
        file.reset();
        concludeExchangeOf(tableFile, diskFolders());
    }
}

} // namespace

void reindexTable(const std::string& path, const std::vector<TagDefinition>& knownTags,
                  const Progress& progress) {
    const LockWaits waits;
    const std::string tableFile = diskFolders().realPath(path);
    std::unique_ptr<File> file = openForOurselves(tableFile);
    const bool isAlone = file->tryLock(presenceLock, LockKind::Exclusive);
    if (!isAlone) {
        holdLock(*file, presenceLock, LockKind::Shared);
    }
    if (const std::optional<std::string> index = findIndexFile(tableFile)) {
        warnIfHalfChanged(tableFile, *openFile(*index, OpenMode::ReadOnly));
    }
    TableFile records(std::move(file));
    const std::optional<std::string> existing = findIndexFile(tableFile);
    const WantedTags wanted = wantedTags(tableFile, existing, records.schema(), knownTags);
    Journal journal(journalBeside(tableFile), records.schema());
    if (const std::string objection = journal.objectionToWriting(); !objection.empty()) {
        throw Error(ErrorCode::AccessDenied, tableFile, objection);
    }
    std::unique_ptr<File> index = existing ? openFile(*existing, OpenMode::ReadWrite) : newIndex(tableFile);
    std::optional<IndexFile> trees; // outlives the lock on its file
    StructureLock::Holders holders;
    if (records.file().isRemote()) {
        holders.exchanged = &records.file();
    }
    const StructureLock lock(*index, holders, LockKind::Exclusive);
    Recovery recovery(records, index.get(), &journal);
    if (isAlone && recovery.hasOthersJournal()) {
        static_cast<void>(recovery.afterRestore()); // the tail is cut at the end in any case
    } else if (isAlone && journal.isOfAnotherStart()) {
        recovery.afterStop(keyColumn(records.schema(), wanted.tags));
    } else {
        static_cast<void>(recovery.afterDeath(stampOf(index.get())));
    }
    if (!wanted.areThere) {
        IndexFile::format(*index, records.schema(), baseName(tableFile), wanted.tags,
                          UpdateStamp{true, true, 0, 1, journal.session()});
    }
    trees.emplace(std::move(index), records.schema());
    rebuildTrees(records, *trees, progress);
    records.markColumns(columnsWithTag(records.schema(), wanted.tags));
    recovery.tail();
    recovery.sync();
    if (isAlone) {
        recovery.endJournal();
    }
}

} // namespace dbase
