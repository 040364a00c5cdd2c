// Applies changes of records to the tags of their table.
#pragma once

#include <string_view>

#include "dbase/dbf/table_file.h"
#include "dbase/mdx/index_file.h"

namespace dbase {

/// Gathers the changes of all tags in the index file; the destructor drops changes not yet written by its
/// writeChangesOrRestore(). The caller holds the exclusive structure lock. Errors: Error(BadIndex, TooLarge).
class TagChanges {
public:
    /// `index`: null for a table without one.
    TagChanges(const TableFile& records, IndexFile* index) : records_(records), index_(index) {}
    ~TagChanges();
    TagChanges(const TagChanges&) = delete;
    TagChanges& operator=(const TagChanges&) = delete;

    /// For a record about to be added.
    void add(const RecordView& record);
    /// For a stored record about to be changed.
    void replace(const RecordView& before, const RecordView& after);

private:
    void insert(const Tag& tag, const RecordView& record);
    void remove(const Tag& tag, const RecordView& record);
    void insertSuccessor(const Tag& tag, std::string_view key, RecordNumber leaving);

    const TableFile& records_;
    IndexFile* index_;
};

} // namespace dbase
