// Journals with right checksums whose entries contradict the table or themselves.
#pragma once

#include "Trial.h"

namespace trial {

inline constexpr const char* thisStart = "este arranque";
inline constexpr const char* otherStart = "otro arranque";

/// Takes numbers and bytes from the input; zeros after its end.
class Input {
public:
    Input(const std::uint8_t* data, std::size_t size) : data_(data), end_(data + size) {}

    [[nodiscard]] bool isEmpty() const { return data_ == end_; }
    std::uint32_t number(int bytes);
    Bytes bytes(std::size_t count);

private:
    const std::uint8_t *data_, *end_;
};

/// Writes a journal for the table from the rest of the input: entries whose rows, numbers and images need not
/// match. The index names the journal's session, so that it is the table's own and is redone.
void forge(std::optional<Bytes>& journal, TableBytes& table, Input& input);

} // namespace trial
