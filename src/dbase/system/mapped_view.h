// A view of a file in memory that survives truncation of the file.
#pragma once

#include <atomic>
#include <cstddef>

namespace dbase {

/// Maps more than the file holds, so that a growing file needs no new mapping. Touching a page beyond the
/// present end of the file would end the process with SIGBUS; instead the page reads as zeros and isTorn()
/// becomes true. So it does where a page cannot be written because its disk is full; what was stored there is
/// lost.
class MappedView {
public:
    enum class Access { Read, Write };

    /// `Write`: for a file that is open for writing.
    MappedView(int descriptor, std::size_t length, Access access = Access::Read);
    ~MappedView();
    MappedView(const MappedView&) = delete;
    MappedView& operator=(const MappedView&) = delete;

    /// Null if the system refused the mapping.
    [[nodiscard]] const char* data() const { return data_; }
    /// For a view with access to write.
    [[nodiscard]] char* writableData() const { return data_; }
    [[nodiscard]] bool isTorn() const;
    /// Maps the file again over the pages that were replaced.
    void renew();

private:
    [[nodiscard]] int protection() const;
    void unmap(char* data) const;

    int descriptor_;
    std::size_t length_;
    Access access_;
    char* data_ = nullptr;
    int slot_ = -1;
};

/// Gives the pages of all views back to the system, which keeps them as those of their files; what is read
/// again is mapped again. For long work on tables larger than the memory that it may take up.
void releaseViewedPages();

/// The same as soon as more than so many bytes of files count as this program's memory, its own code
/// included. Asks the system, which takes some microseconds.
void boundViewedPages(std::size_t bytes);

} // namespace dbase
