// Rebuilds every tag of an index from the records of its table.
#pragma once

#include <vector>

#include "dbase/dbf/record_scan.h"
#include "dbase/dbf/table_file.h"
#include "dbase/mdx/index_file.h"
#include "dbase/system/progress.h"

namespace dbase {

/// Rebuilds every tree in place; the tag headers stay where they are. The caller holds the exclusive
/// structure lock. If it does not finish, the in-update mark stays set. Errors: Error.
void rebuildTrees(TableFile& records, IndexFile& index, const Progress& progress);

/// Trees that have been written to the file, in the order of the tags, and to which no header leads yet.
struct NewTrees {
    std::vector<TreeRoot> roots;
    std::vector<std::uint32_t> blockCounts;
    PageNumber end = 0;           // first page after them and the headers
    std::uint64_t sizeBefore = 0; // of the file, without them
};

/// Builds trees of these records in blocks that are not in use, which takes its time while others read the
/// old ones: the caller shares the structure lock with them. Errors:
/// Error(BadIndex, TooLarge, DiskFull) if they must be rebuilt in place instead; others; what `progress`
/// throws. The file is then as before.
[[nodiscard]] NewTrees buildTreesBeside(const TableFile& records, IndexFile& index,
                                        const ScannedRecords& which, const Progress& progress);
/// Makes them the index's trees; the blocks of the old ones are free for the next to be built. The caller
/// holds the exclusive structure lock, has set the in-update mark and clears it afterwards.
void useTrees(TableFile& records, IndexFile& index, const NewTrees& trees);
/// Cuts them off again.
void dropTrees(IndexFile& index, const NewTrees& trees);
/// Cuts off what a load that died in buildTreesBeside() left after the last page in use. The caller is alone
/// with the table.
void cutLeftTrees(IndexFile& index);

} // namespace dbase
