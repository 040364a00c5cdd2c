// An answer of the street-directory service as a document.
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace pugi {
class xml_document;
}

namespace ambrel {

/// Knows the entities of XML and no others; nesting and number of nodes are bounded.
class DirectoryDocument {
public:
    DirectoryDocument();
    ~DirectoryDocument();
    DirectoryDocument(const DirectoryDocument&) = delete;
    DirectoryDocument& operator=(const DirectoryDocument&) = delete;

    /// Takes a UTF-8 text, whatever encoding it declares; an empty one is a document without nodes. Errors:
    /// std::runtime_error (Spanish, UTF-8) for a text that is no XML, holds too much or could not be read
    /// back once it is saved; the document is then without nodes.
    void load(std::string_view utf8);
    /// The same with a file, whose own declaration tells its encoding. Errors also for one that cannot be
    /// read, is no plain file or is larger than the largest answer.
    void loadFile(const std::string& path);
    void clear();
    [[nodiscard]] bool hasNodes() const;
    /// Writes it in UTF-8, indented by eight blanks a level; loadFile() makes the same of it. Errors:
    /// std::runtime_error.
    void save(const std::string& path) const;

    /// For the readers of the answers.
    [[nodiscard]] const pugi::xml_document& tree() const { return *tree_; }

private:
    std::unique_ptr<pugi::xml_document> tree_;
};

} // namespace ambrel
