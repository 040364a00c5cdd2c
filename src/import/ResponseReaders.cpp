// Reads the answers of the street-directory service.
#include "import/ResponseReaders.h"

#include <algorithm>
#include <charconv>
#include <pugixml.hpp>
#include <utility>

#include "data/TableDefinitions.h"
#include "dbase/dbf/codepage.h"
#include "dbase/system/trim.h"
#include "import/Document.h"
#include "services/Text.h"

namespace ambrel {
namespace {

/// In bytes. A longer name is not a place's and could not be filed.
constexpr std::size_t longestName = 250;
/// In bytes of UTF-8: longer texts are cut.
constexpr std::size_t longestText = 1024;

/// The elements that hold an operation's results.
struct Layout {
    const char *count, *list;
};

constexpr Layout provinceLayout{"cuprov", "provinciero"};
constexpr Layout municipalityLayout{"cumun", "municipiero"};
constexpr Layout streetLayout{"cuca", "callejero"};

pugi::xml_node firstElement(const pugi::xml_node& parent) {
    return parent.find_child([](const pugi::xml_node& node) { return node.type() == pugi::node_element; });
}

pugi::xml_node nextElement(pugi::xml_node node) {
    do {
        node = node.next_sibling();
    } while (node && node.type() != pugi::node_element);
    return node;
}

/// Deliberate: below the envelope, names are ignored; the elements of body, answer and result are the first
/// of their level.
pugi::xml_node rootOf(const DirectoryDocument& answer) {
    return firstElement(firstElement(firstElement(answer.tree().child("soap:Envelope"))));
}

bool isText(const pugi::xml_node& node) {
    return node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata;
}

std::string inWindows1252(std::string_view utf8) {
    if (std::ranges::all_of(utf8, [](char c) { return static_cast<unsigned char>(c) < 0x80; })) {
        return std::string(utf8);
    }
    if (auto bytes = dbase::CodePage::windows1252().fromUtf8(utf8)) {
        return std::move(*bytes);
    }
    return toNearestWindows1252(QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size())));
}

/// The start of a text, not cut within a character.
std::string_view start(std::string_view utf8) {
    if (utf8.size() <= longestText) {
        return utf8;
    }
    std::size_t end = longestText;
    while (end > 0 && (static_cast<unsigned char>(utf8[end]) & 0xC0) == 0x80) {
        --end;
    }
    return utf8.substr(0, end);
}

std::string textOf(const pugi::xml_node& element) {
    const pugi::xml_node first = element.first_child();
    if (first && isText(first) && !first.next_sibling()) {
        return inWindows1252(start(first.value()));
    }
    std::string utf8;
    for (const pugi::xml_node& child : element.children()) {
        if (isText(child)) {
            utf8 += start(child.value());
        }
    }
    return inWindows1252(start(utf8));
}

std::optional<int> wholeNumber(std::string_view text) {
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(value) : std::nullopt;
}

/// An answer as known before its entries are read.
struct Answer {
    Reading reading = Reading::Empty;
    std::optional<int> count = {};
    pugi::xml_node list = {};
};

Answer begin(const DirectoryDocument& document, const Layout& layout, const std::function<void()>& atRoot) {
    if (!document.hasNodes()) {
        return {};
    }
    if (!rootOf(document)) {
        return {.reading = Reading::NoRoot};
    }
    if (atRoot) {
        atRoot(); // may run calls of the host that load the document anew: no node is kept across it
    }
    const pugi::xml_node root = rootOf(document);
    if (!root) {
        return {.reading = Reading::NoRoot};
    }
    Answer answer{.reading = Reading::Whole, .list = root.child(layout.list)};
    if (const pugi::xml_node counted = root.child("control").child(layout.count)) {
        answer.count = wholeNumber(dbase::trimmedLine(textOf(counted)));
        if (!answer.count) {
            return {.reading = Reading::NoRoot};
        }
    }
    return answer;
}

/// Reads as many entries as the answer counts; `readEntry` returns whether one was readable.
template<class ReadEntry>
void readEntries(Answer& answer, ReadEntry readEntry) {
    if (!answer.list) {
        return;
    }
    pugi::xml_node entry = firstElement(answer.list);
    for (int left = answer.count.value_or(0); left > 0; --left) {
        if (!entry || !readEntry(entry)) {
            answer.reading = Reading::Partial;
        }
        if (!entry) {
            return; // all further ones are missing too
        }
        entry = nextElement(entry);
    }
}

NameList readNames(const DirectoryDocument& document, const Layout& layout, const char* nameElement,
                   const std::function<void()>& atRoot) {
    Answer answer = begin(document, layout, atRoot);
    NameList result;
    readEntries(answer, [&](const pugi::xml_node& entry) {
        const pugi::xml_node name = entry.child(nameElement);
        std::string text = textOf(name);
        if (!name || text.size() > longestName) {
            return false;
        }
        result.names.push_back(std::move(text));
        return true;
    });
    result.reading = answer.reading;
    return result;
}

ImportedStreet readStreet(const pugi::xml_node& address) {
    ImportedStreet street;
    std::string text;
    if (const pugi::xml_node type = address.child("tv")) {
        text = dbase::trimmedLine(textOf(type));
    }
    street.type = text;
    // Deliberate: without a name the type's code stands in for it.
    if (const pugi::xml_node name = address.child("nv")) {
        text = dbase::trimmedLine(textOf(name));
    }
    street.type.resize(std::min(street.type.size(), streetNameWidth));
    text.resize(std::min(text.size(), streetNameWidth));
    street.name = std::move(text);
    return street;
}

} // namespace

NameList readProvinces(const DirectoryDocument& answer, const std::function<void()>& atRoot) {
    return readNames(answer, provinceLayout, "np", atRoot);
}

NameList readMunicipalities(const DirectoryDocument& answer, const std::function<void()>& atRoot) {
    return readNames(answer, municipalityLayout, "nm", atRoot);
}

StreetList readStreets(const DirectoryDocument& document, const std::function<void()>& atRoot) {
    Answer answer = begin(document, streetLayout, atRoot);
    StreetList result{.count = answer.count};
    readEntries(answer, [&](const pugi::xml_node& entry) {
        if (const pugi::xml_node address = entry.child("dir")) {
            result.streets.push_back(readStreet(address));
        }
        return true; // an entry without an address is neither a street nor an error
    });
    result.reading = answer.reading;
    return result;
}

} // namespace ambrel
