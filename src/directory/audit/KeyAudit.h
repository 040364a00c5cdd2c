// The keys of POSTAL (CODIGO1): well formed, each in one row, and how many of them users have.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "directory/audit/Finding.h"
#include "directory/audit/PlaceBook.h"

namespace ambrel::directory {

/// Takes rows in any order, and keeps 12 bytes of each.
class KeyAudit {
public:
    void add(const StreetRow& row, const FindingSink& sink);
    /// After the last row.
    void finish(const FindingSink& sink);

    [[nodiscard]] std::uint64_t userKeys() const { return userKeys_; }
    [[nodiscard]] const std::string& highestUserKey() const { return highestUserKey_; }

private:
    struct Key {
        std::uint32_t number;
        dbase::RecordNumber record;
        std::uint8_t province; // 0: not known
    };

    void tellBlock(const FindingSink& sink) const;

    std::vector<Key> keys_;
    std::uint64_t userKeys_ = 0; // in the block "99"
    std::string highestUserKey_; // empty if there are none
};

} // namespace ambrel::directory
