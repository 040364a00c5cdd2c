// A long file as text in memory, without a copy of it.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "dbase/system/mapped_view.h"

namespace loading {

/// For a reader that goes through it once: what lies far behind it no longer takes up memory of the program.
class MappedText {
public:
    /// Null if the system cannot show the file in memory, such as a pipe or an empty one. Errors: Failure if
    /// it cannot be opened.
    [[nodiscard]] static std::unique_ptr<MappedText> open(const std::string& path);
    ~MappedText();
    MappedText(const MappedText&) = delete;
    MappedText& operator=(const MappedText&) = delete;

    [[nodiscard]] std::string_view text() const { return {view_.data(), size_}; }
    /// To be called now and then with the place that the reader has come to. Bytes up to 16 MiB before it
    /// can be read without delay, and all others still be read.
    void reach(std::size_t offset);
    /// Errors: Failure if another program has cut the file since; what was read may then be wrong.
    void requireWhole() const;

private:
    MappedText(std::string path, int descriptor, std::size_t size);

    std::string path_;
    int descriptor_;
    std::size_t size_;
    dbase::MappedView view_;
    std::size_t begin_ = 0, end_ = 0; // of what was brought into memory
};

} // namespace loading
