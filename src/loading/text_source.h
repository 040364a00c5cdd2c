// Sources of text that is read piece by piece.
#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <string_view>

namespace loading {

/// Fills a piece of memory with the next bytes and returns their number; 0 at the end.
using TextSource = std::function<std::size_t(std::span<char>)>;

/// Source over a text in memory, which must outlive it.
[[nodiscard]] TextSource textSource(std::string_view text);
/// Source over a file. Errors: Failure if it cannot be opened or read.
[[nodiscard]] TextSource fileSource(const std::string& path);
/// Source over the program's standard input. `name`: what errors call it.
[[nodiscard]] TextSource standardInput(const std::string& name);

/// Everything left in a source.
[[nodiscard]] std::string wholeText(const TextSource& source);

} // namespace loading
