// Pages of an index that must stay as they are while new trees are written beside them.
#pragma once

#include <vector>

#include "dbase/mdx/index_file.h"

namespace dbase {

class PageSet {
public:
    /// The tag headers.
    [[nodiscard]] static PageSet headersOf(const IndexFile& index);
    /// Those, and every block of every tree. Errors: Error(BadIndex) for trees that are damaged.
    [[nodiscard]] static PageSet usedIn(const IndexFile& index);

    [[nodiscard]] bool hasAny(PageNumber first, PageNumber pages) const;
    /// The page after the last one.
    [[nodiscard]] PageNumber end() const { return static_cast<PageNumber>(has_.size()); }

private:
    void add(PageNumber first, PageNumber pages);
    void addTree(const IndexFile& index, const Tag& tag);

    std::vector<bool> has_;
};

} // namespace dbase
