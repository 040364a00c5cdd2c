// Answers as documents.
#include "import/Document.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <optional>
#include <pugixml.hpp>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "import/Transport.h"

namespace ambrel {
namespace {

/// An answer has six levels.
constexpr int deepestLevel = 64;

/// Walks without recursion: the depth is what is in doubt.
bool isTooDeep(const pugi::xml_document& tree) {
    int depth = 0;
    pugi::xml_node node = tree;
    while (true) {
        if (const pugi::xml_node child = node.first_child()) {
            if (++depth > deepestLevel)
                return true;
            node = child;
            continue;
        }
        while (depth > 0 && !node.next_sibling()) {
            node = node.parent();
            --depth;
        }
        if (depth == 0)
            return false;
        node = node.next_sibling();
    }
}

/// Null when it cannot be read: a pipe would keep the reader waiting, a device has no end.
std::optional<std::string> contentOf(const std::string& path) {
    std::error_code failure;
    if (!std::filesystem::is_regular_file(path, failure))
        return std::nullopt;
    const std::uintmax_t size = std::filesystem::file_size(path, failure);
    std::ifstream file(path, std::ios::binary);
    if (failure || size > largestAnswer || !file.is_open())
        return std::nullopt;
    std::string text(static_cast<std::size_t>(size), '\0');
    file.read(text.data(), static_cast<std::streamsize>(size));
    return file.gcount() == static_cast<std::streamsize>(size) ? std::optional(std::move(text))
                                                               : std::nullopt;
}

bool isBlank(std::string_view text) { return text.find_first_not_of(" \t\r\n") == std::string_view::npos; }

void parse(pugi::xml_document& tree, std::string_view text, pugi::xml_encoding encoding) {
    tree.reset();
    if (isBlank(text))
        return;
    const pugi::xml_parse_result result =
        tree.load_buffer(text.data(), text.size(), pugi::parse_default | pugi::parse_declaration, encoding);
    if (!result) {
        tree.reset();
        throw std::runtime_error("La respuesta no es un documento XML válido (byte " +
                                 std::to_string(result.offset) + ").");
    }
    if (isTooDeep(tree)) {
        tree.reset();
        throw std::runtime_error("La respuesta tiene demasiados niveles.");
    }
}

} // namespace

DirectoryDocument::DirectoryDocument() : tree_(std::make_unique<pugi::xml_document>()) {}

DirectoryDocument::~DirectoryDocument() = default;

void DirectoryDocument::load(std::string_view utf8) { parse(*tree_, utf8, pugi::encoding_utf8); }

void DirectoryDocument::loadFile(const std::string& path) {
    clear();
    const std::optional<std::string> text = contentOf(path);
    if (!text)
        throw std::runtime_error("No se puede leer " + path + ".");
    parse(*tree_, *text, pugi::encoding_auto);
}

void DirectoryDocument::clear() { tree_->reset(); }

bool DirectoryDocument::hasNodes() const { return !tree_->first_child().empty(); }

void DirectoryDocument::save(const std::string& path) const {
    if (!tree_->save_file(path.c_str(), "        ", pugi::format_indent, pugi::encoding_utf8))
        throw std::runtime_error("No se puede guardar " + path + ".");
}

} // namespace ambrel
