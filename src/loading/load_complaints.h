// Complaints about a text to be loaded.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace loading {

/// Collects complaints, so that one attempt reports them all: the first ones in full, the rest as a number.
class LoadComplaints {
public:
    static constexpr std::size_t mostTold = 100;

    /// `name`: what complaints call the text.
    explicit LoadComplaints(std::string name) : name_(std::move(name)) {}

    /// Adds a complaint about a line; `text` continues it: ", columna NUM: ...".
    void add(std::uint64_t line, const std::string& text);
    /// Adds what ended the reading before the end of the text, with the name already in it; always reported.
    void addEnd(const std::string& text) { end_ = text; }
    /// Adds something worth saying once, after everything else.
    void addHint(const std::string& text) { hint_ = text; }

    [[nodiscard]] bool empty() const { return told_.empty() && end_.empty(); }
    /// All complaints, one a line, and that nothing was loaded.
    [[nodiscard]] std::string text() const;

private:
    std::string name_;
    std::vector<std::string> told_;
    std::uint64_t untold_ = 0;
    std::string end_, hint_;
};

} // namespace loading
