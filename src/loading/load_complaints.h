// What is wrong with a text that is to be loaded.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace loading {

/// Gathers what is wrong, so that one attempt tells all of it: the first ones word by word, of the others the
/// number.
class LoadComplaints {
public:
    static constexpr std::size_t mostTold = 100;

    /// `name` is what they call the text.
    explicit LoadComplaints(std::string name) : name_(std::move(name)) {}

    /// One of a line; `text` goes behind it: ", columna NUM: ...".
    void add(std::uint64_t line, const std::string& text);
    /// What ended the reading before the end of the text, already with its name; told in any case.
    void addEnd(const std::string& text) { end_ = text; }
    /// Something worth saying once, behind everything.
    void addHint(const std::string& text) { hint_ = text; }

    [[nodiscard]] bool empty() const { return told_.empty() && end_.empty(); }
    /// All of it, one a line, and that nothing was loaded.
    [[nodiscard]] std::string text() const;

private:
    std::string name_;
    std::vector<std::string> told_;
    std::uint64_t untold_ = 0;
    std::string end_, hint_;
};

} // namespace loading
