// Sorts the keys of a whole table, in memory if they fit, otherwise through temporary files.
#pragma once

#include <cstdio>
#include <functional>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "dbase/dbf/schema.h"
#include "dbase/mdx/key.h"

namespace dbase {

/// Takes (key, record) pairs in any order and delivers them in the tag's order, equal keys by record number.
class KeySorter {
public:
    using Receiver = std::function<void(std::string_view key, RecordNumber record)>;

    /// `expected`: approximate number of pairs. `memory`: bytes to hold before a sorted run is written to a
    /// temporary file.
    KeySorter(KeyOrder order, std::size_t keyLength, std::size_t expected,
              std::size_t memory = std::size_t{128} << 20);
    ~KeySorter();

    void add(std::string_view key, RecordNumber record);
    void deliver(const Receiver& receiver);

private:
    struct Run;
    struct Handle {
        std::uint64_t bytes; // some of the key, in an order that compares like them
        std::uint32_t item;
    };

    [[nodiscard]] const char* item(std::size_t i) const { return items_.data() + i * itemSize_; }
    [[nodiscard]] bool comesBefore(const char* a, const char* b) const;
    [[nodiscard]] std::vector<Handle> sorted() const;
    void sortByComparing(std::span<Handle> handles) const;
    /// `from`: where their keys may differ.
    void sortByBytes(std::span<Handle> handles, std::size_t from) const;
    [[nodiscard]] std::size_t bytesFrom(std::size_t from) const;
    void fetchBytes(std::span<Handle> handles, std::size_t from) const;
    void sortFetched(std::span<Handle> handles, std::size_t from) const;
    void sortInTwoParts(std::span<Handle> handles) const;
    void spill();
    void merge(const Receiver& receiver);

    KeyOrder order_;
    std::size_t keyLength_, itemSize_, memory_;
    bool byPrefix_;
    std::vector<char> items_; // key, record number
    std::vector<std::unique_ptr<Run>> runs_;
};

} // namespace dbase
