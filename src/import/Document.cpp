// Parses, checks and saves answers as XML documents.
#include "import/Document.h"

#include <algorithm>
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

/// How many nodes a document has, itself included, and on how many levels below it they are.
struct Extent {
    int nodes = 0, levels = 0;
};

/// Nothing if it passes the limits. Walks without recursion, because the depth is yet unchecked.
std::optional<Extent> extentOf(const pugi::xml_document& tree) {
    Extent extent;
    int depth = 0;
    pugi::xml_node node = tree;
    while (true) {
        if (++extent.nodes > mostNodes) {
            return std::nullopt;
        }
        pugi::xml_node next = node.first_child();
        if (next) {
            extent.levels = std::max(extent.levels, ++depth);
            if (depth > deepestLevel) {
                return std::nullopt;
            }
        }
        while (!next && depth > 0) {
            next = node.next_sibling();
            if (!next) {
                node = node.parent();
                --depth;
            }
        }
        if (!next) {
            return extent;
        }
        node = next;
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

Extent parse(pugi::xml_document& tree, std::string_view text, pugi::xml_encoding encoding,
             unsigned int options = pugi::parse_default) {
    tree.reset();
    if (isBlank(text)) {
        return {};
    }
    const pugi::xml_parse_result result =
        tree.load_buffer(text.data(), text.size(), options | pugi::parse_declaration, encoding);
    if (!result) {
        tree.reset();
        throw std::runtime_error("La respuesta no es un documento XML válido (byte " +
                                 std::to_string(result.offset) + ").");
    }
    const std::optional<Extent> extent = extentOf(tree);
    if (!extent) {
        tree.reset();
        throw std::runtime_error("La respuesta tiene demasiados elementos o niveles.");
    }
    declareUtf8(tree);
    return *extent;
}

constexpr std::string_view indent = "        ";

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
    tree.save(size, indent.data(), filedFormat(tree), pugi::encoding_utf8);
    return size.bytes;
}

/// No document received in so many bytes is filed in more: each byte takes at most six ("&quot;"), each node
/// two lines, and a declaration may be added.
std::size_t mostFiled(std::size_t received, const Extent& extent) {
    constexpr std::size_t ofByte = 6, ofLine = 8, ofDeclaration = 64;
    const std::size_t line = static_cast<std::size_t>(extent.levels) * indent.size() + ofLine;
    return received * ofByte + static_cast<std::size_t>(extent.nodes) * 2 * line + ofDeclaration;
}

} // namespace

DirectoryDocument::DirectoryDocument() : tree_(std::make_unique<pugi::xml_document>()) {}

DirectoryDocument::~DirectoryDocument() = default;

void DirectoryDocument::load(std::string_view utf8) {
    const Extent extent = parse(*tree_, utf8, pugi::encoding_utf8);
    if (mostFiled(utf8.size(), extent) <= largestAnswer || filedSize(*tree_) <= largestAnswer) {
        return; // writing it out to count takes longer than reading it
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
    if (!tree_->save_file(path.c_str(), indent.data(), filedFormat(*tree_), pugi::encoding_utf8)) {
        throw std::runtime_error("No se puede guardar " + path + ".");
    }
}

} // namespace ambrel
