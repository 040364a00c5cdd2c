// Provinces by any writing of their names.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace ambrel::suggest {

/// Those that the word lists know, and those of PROVIN as soon as it can be read.
class ProvinceText {
public:
    explicit ProvinceText(std::string database) : database_(std::move(database)) {}

    /// The two digits of a province from its digits or from its name in any writing; empty if unknown.
    [[nodiscard]] std::string digitsOf(const std::string& text);
    /// The name that PROVIN holds; empty if it holds none.
    [[nodiscard]] std::string nameOf(const std::string& digits);

private:
    using Names = std::vector<std::pair<std::string, std::string>>;

    void prepare();
    void readTable();

    std::string database_;
    Names names_; // letters of the words that count, digits
    Names cut_;   // of names that fill their column
    Names shown_; // digits, name as stored
    bool isRead_ = false;
};

} // namespace ambrel::suggest
