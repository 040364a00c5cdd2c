// A writer that changes a street table at random until it is stopped or killed.
#pragma once

#include <array>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "ExpectedRows.h"
#include "PostLog.h"
#include "dbase/dataset/dataset.h"
#include "dbase/table/table.h"

namespace resistance {

/// What a writer does, and the weights with which it chooses each kind of post.
struct WriterWork {
    std::array<int, postKinds> weights{6, 4, 1, 0, 0, 0, 0}; // in the order of PostKind
    dbase::Durability durability = dbase::Durability::Process;
    bool throughDataset = false;  // as the dialogs work; else directly through the table
    bool onlyAcrossPages = false; // changes only rows that the system may write in two parts
    std::uint32_t firstSerial = 0;
    std::uint32_t mostRows = 300; // of a load, or stored together
    std::uint32_t seed = 0;
};

/// Lives in the writer's own process. The table is POSTAL of database "DB".
class RandomPosts {
public:
    RandomPosts(std::string tableFile, const WriterWork& work, const std::vector<Holding>& rows,
                PostLog& log);
    /// Returns when the log says stop, or is full.
    void run();

private:
    void open();
    void close();
    [[nodiscard]] std::uint32_t below(std::size_t limit);
    [[nodiscard]] PostKind choose();
    void append();
    void change(bool erase);
    void rebuild();
    void load(PostKind kind);
    void storeTogether();
    void store(const Holding& target, const StreetVersion& row);
    void hold(const Holding& holding);

    std::string tableFile_;
    WriterWork work_;
    std::vector<Holding> rows_;
    PostLog& log_;
    std::minstd_rand random_;
    std::uint32_t nextSerial_;
    dbase::Dataset streets_{"DB", "POSTAL", "VIA"};
    std::shared_ptr<dbase::Table> table_;
};

} // namespace resistance
