// An answer of the street-directory service as a document.
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace pugi {
class xml_document;
}

namespace ambrel {

/// Knows only XML's own entities; nesting depth and number of nodes are bounded.
class DirectoryDocument {
public:
    DirectoryDocument();
    ~DirectoryDocument();
    DirectoryDocument(const DirectoryDocument&) = delete;
    DirectoryDocument& operator=(const DirectoryDocument&) = delete;

    /// Loads a UTF-8 text, whatever encoding it declares; an empty one is a document without nodes. Errors:
    /// std::runtime_error (Spanish, UTF-8) for a text that is not XML, holds too much or, once saved, could
    /// not be read back; the document is then without nodes.
    void load(std::string_view utf8);
    /// The same with a file, in the encoding that it declares. Errors also for a file that cannot be read, is
    /// not a plain file or is larger than the largest answer.
    void loadFile(const std::string& path);
    void clear();
    [[nodiscard]] bool hasNodes() const;
    /// Writes the document in UTF-8, indented by eight blanks per level; loadFile() reads the same document
    /// back. Errors: std::runtime_error.
    void save(const std::string& path) const;

    /// For the readers of the answers.
    [[nodiscard]] const pugi::xml_document& tree() const { return *tree_; }

private:
    std::unique_ptr<pugi::xml_document> tree_;
};

} // namespace ambrel
