// Parses, checks and saves answers as XML documents.
#include "import/Document.h"

#include <optional>
#include <pugixml.hpp>
#include <stdexcept>

#include "dbase/system/file_size_limit.h"
#include "import/Transport.h"
#include "services/FileStart.h"

namespace ambrel {
namespace {

/// An answer has eight levels.
constexpr int deepestLevel = 16;
/// The largest municipality has 10,000 streets of some fifteen nodes each. A filed node takes up to 150 bytes
/// more than the received one.
constexpr int mostNodes = 1'000'000;

/// Walks without recursion, because the depth is yet unchecked.
bool isTooLarge(const pugi::xml_document& tree) {
    int depth = 0, nodes = 0;
    pugi::xml_node node = tree;
    while (true) {
        if (++nodes > mostNodes) {
            return true;
        }
        if (const pugi::xml_node child = node.first_child()) {
            if (++depth > deepestLevel) {
                return true;
            }
            node = child;
            continue;
        }
        while (depth > 0 && !node.next_sibling()) {
            node = node.parent();
            --depth;
        }
        if (depth == 0) {
            return false;
        }
        node = node.next_sibling();
    }
}

bool isBlank(std::string_view text) { return text.find_first_not_of(" \t\r\n") == std::string_view::npos; }

/// A document is filed in UTF-8, whatever its original encoding.
void declareUtf8(pugi::xml_document& tree) {
    for (pugi::xml_node& node : tree.children()) {
        if (pugi::xml_attribute encoding = node.attribute("encoding");
            encoding && node.type() == pugi::node_declaration) {
            encoding.set_value("utf-8");
        }
    }
}

void parse(pugi::xml_document& tree, std::string_view text, pugi::xml_encoding encoding,
           unsigned int options = pugi::parse_default) {
    tree.reset();
    if (isBlank(text)) {
        return;
    }
    const pugi::xml_parse_result result =
        tree.load_buffer(text.data(), text.size(), options | pugi::parse_declaration, encoding);
    if (!result) {
        tree.reset();
        throw std::runtime_error("La respuesta no es un documento XML válido (byte " +
                                 std::to_string(result.offset) + ").");
    }
    if (isTooLarge(tree)) {
        tree.reset();
        throw std::runtime_error("La respuesta tiene demasiados elementos o niveles.");
    }
    declareUtf8(tree);
}

constexpr const char* indent = "        ";

/// A document without nodes is filed as an empty file: a declaration alone is not a document.
unsigned int filedFormat(const pugi::xml_document& tree) {
    return tree.first_child() ? pugi::format_indent : pugi::format_indent | pugi::format_no_declaration;
}

/// Counts the bytes written.
struct Size : pugi::xml_writer {
    void write(const void*, std::size_t count) override { bytes += count; }
    std::size_t bytes = 0;
};

std::size_t filedSize(const pugi::xml_document& tree) {
    Size size;
    tree.save(size, indent, filedFormat(tree), pugi::encoding_utf8);
    return size.bytes;
}

} // namespace

DirectoryDocument::DirectoryDocument() : tree_(std::make_unique<pugi::xml_document>()) {}

DirectoryDocument::~DirectoryDocument() = default;

void DirectoryDocument::load(std::string_view utf8) {
    parse(*tree_, utf8, pugi::encoding_utf8);
    if (filedSize(*tree_) <= largestAnswer) {
        return;
    }
    clear();
    throw std::runtime_error("La respuesta es demasiado grande para guardarla.");
}

void DirectoryDocument::loadFile(const std::string& path) {
    clear();
    const std::optional<std::string> text = fileStart(path, largestAnswer + 1);
    if (!text || text->size() > largestAnswer) {
        throw std::runtime_error("No se puede leer " + path + ".");
    }
    // A carriage return received as "&#13;" is filed as it is; it does not end a line.
    parse(*tree_, *text, pugi::encoding_auto, pugi::parse_default & ~pugi::parse_eol);
}

void DirectoryDocument::clear() { tree_->reset(); }

bool DirectoryDocument::hasNodes() const { return !tree_->first_child().empty(); }

void DirectoryDocument::save(const std::string& path) const {
    dbase::FileSizeSignal::lookForLimit();
    const dbase::FileSizeSignal signal;
    if (!tree_->save_file(path.c_str(), indent, filedFormat(*tree_), pugi::encoding_utf8)) {
        throw std::runtime_error("No se puede guardar " + path + ".");
    }
}

} // namespace ambrel
