// A journal's place in memory.
#pragma once

#include <memory>
#include <string>

#include "MemoryFile.h"
#include "dbase/journal/journal_place.h"

namespace dbase::test {

/// A name in a folder: the content of its file, null while there is none.
struct MemoryName {
    std::shared_ptr<MemoryContent> content;
    std::shared_ptr<MemoryContent> aside; // the one that was last set aside
};

class MemoryJournal final : public JournalPlace {
public:
    explicit MemoryJournal(std::shared_ptr<MemoryName> name, bool writable = true)
        : name_(std::move(name)), writable_(writable) {}

    std::unique_ptr<File> openExisting() override;
    std::unique_ptr<File> create() override;
    void remove() override;
    std::string setAside() override;

private:
    void requireWritable() const;

    std::shared_ptr<MemoryName> name_;
    bool writable_;
};

} // namespace dbase::test
