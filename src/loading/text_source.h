// Where text that is read piece by piece comes from.
#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <string_view>

namespace loading {

/// Fills a piece of memory with the bytes that follow and says how many they are; 0 at the end.
using TextSource = std::function<std::size_t(std::span<char>)>;

/// Source on a text in memory, which must outlive it.
[[nodiscard]] TextSource textSource(std::string_view text);
/// Source on a file. Errors: Failure for one that cannot be opened or read.
[[nodiscard]] TextSource fileSource(const std::string& path);
/// Source on what the program is given to read. `name` is what errors call it.
[[nodiscard]] TextSource standardInput(const std::string& name);

/// All that a source has left.
[[nodiscard]] std::string wholeText(const TextSource& source);

} // namespace loading
