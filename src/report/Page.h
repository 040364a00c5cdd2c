// One HTML page that opens without a network, a script or a second file.
#pragma once

#include <string>
#include <string_view>

#include <pugixml.hpp>

#include "report/PageBlock.h"

namespace report {

/// Built as a tree and written by pugixml, so that every text is escaped. All texts in UTF-8; those from
/// outside go through shownText() first.
class Page {
public:
    /// `title`: of the browser's window. `kind`: in small letters above the heading.
    Page(std::string_view title, std::string_view kind, std::string_view heading);

    /// Below the heading, for what the report is about.
    [[nodiscard]] PageBlock head() const { return PageBlock(head_); }
    /// A section with a heading of its own, below those added before; `introduction` may be empty.
    [[nodiscard]] PageBlock section(std::string_view heading, std::string_view introduction);
    /// The last lines of the page.
    [[nodiscard]] PageBlock foot() const { return PageBlock(foot_); }

    /// The whole page.
    [[nodiscard]] std::string html() const;

private:
    pugi::xml_document tree_;
    pugi::xml_node head_, main_, foot_;
};

} // namespace report
