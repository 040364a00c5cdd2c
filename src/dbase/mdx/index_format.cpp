// Writes a new .MDX: header, tag table with its name tree, tag headers and empty roots.

#include <algorithm>
#include <array>
#include <cstring>

#include "dbase/dbf/dates.h"
#include "dbase/mdx/index_file.h"
#include "dbase/mdx/index_layout.h"
#include "dbase/system/bytes.h"
#include "dbase/system/error.h"
#include "dbase/system/names.h"
#include "dbase/system/paths.h"
#include "dbase/system/quoted.h"

namespace dbase {

namespace {

void putText(char* at, std::string_view text) { std::memcpy(at, text.data(), text.size()); }

struct KeyShape {
    KeyType type;
    std::uint16_t length;
    bool isPlain;
};

KeyShape shapeOf(const Expression& key, const std::string& tag) {
    switch (key.type()) {
    case ValueType::Text:
        if (key.width() == 0 || key.width() > maxKeyLength) {
            throw Error(ErrorCode::BadExpression, {},
                        "la clave del tag " + tag + " mide " + std::to_string(key.width()) +
                            " bytes; caben de 1 a 100");
        }
        return {KeyType::Character, static_cast<std::uint16_t>(key.width()), key.isPlainColumn()};
    case ValueType::Number:
        return {KeyType::Numeric, numericKeyLength, key.isPlainColumn()};
    case ValueType::Date:
        return {KeyType::Date, dateKeyLength, key.isPlainColumn()};
    case ValueType::Logical:
        break;
    }
    throw Error(ErrorCode::BadExpression, {},
                "la clave del tag " + tag + " es lógica; no se puede ordenar por ella");
}

void checkDefinition(const TagDefinition& tag, const Schema& schema, std::size_t blockBytes) {
    const auto isNameByte = [](char c) {
        return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
    };
    if (tag.name.empty() || tag.name.size() > 10 ||
        !std::all_of(tag.name.begin(), tag.name.end(), isNameByte)) {
        throw Error(ErrorCode::BadExpression, {}, inQuotes(tag.name) + " no sirve como nombre de tag");
    }
    if (tag.expression.size() >= mdx::textSize || tag.condition.size() >= mdx::textSize ||
        (!tag.condition.empty() && blockBytes < mdx::tagHeaderBytes)) {
        throw Error(ErrorCode::BadExpression, {}, "la expresión del tag " + tag.name + " es demasiado larga");
    }
    if (!tag.condition.empty() &&
        Expression::parse(tag.condition, schema, Dialect::Index).type() != ValueType::Logical) {
        throw Error(ErrorCode::BadExpression, {}, "la condición del tag " + tag.name + " no es lógica");
    }
}

std::vector<KeyShape> shapesOf(const std::vector<TagDefinition>& tags, const Schema& schema,
                               std::size_t blockBytes, const std::string& file) {
    if (tags.size() > mdx::maxTags) {
        throw Error(ErrorCode::BadIndex, file, "un índice admite 47 tags como mucho");
    }
    std::vector<KeyShape> shapes;
    for (const TagDefinition& tag : tags) {
        checkDefinition(tag, schema, blockBytes);
        if (std::ranges::count(tags, tag.name, &TagDefinition::name) > 1) {
            throw Error(ErrorCode::BadExpression, file, "el tag " + tag.name + " está repetido");
        }
        shapes.push_back(shapeOf(Expression::parse(tag.expression, schema, Dialect::Index), tag.name));
    }
    return shapes;
}

// Builds the tag-name tree that older engines follow: unbalanced, grown in order of creation.
void linkNames(std::span<char> head, const std::vector<TagDefinition>& tags) {
    const auto entry = [&](std::size_t i) { return head.data() + mdx::tagTable + i * mdx::tagEntrySize; };
    for (std::size_t i = 1; i <= tags.size(); ++i) {
        if (i == 1) {
            entry(0)[mdx::entryGreater] = 1;
            continue;
        }
        std::size_t at = 1;
        while (true) {
            const std::size_t link =
                tags[i - 1].name < tags[at - 1].name ? mdx::entryLess : mdx::entryGreater;
            const auto next = static_cast<std::uint8_t>(entry(at)[link]);
            if (next == 0) {
                entry(at)[link] = static_cast<char>(i);
                entry(i)[mdx::entryParent] = static_cast<char>(at);
                break;
            }
            at = next;
        }
    }
}

std::vector<char> encodeTagHeader(const TagDefinition& tag, const KeyShape& shape, PageNumber root,
                                  unsigned blockPages) {
    const std::size_t size = blockPages * pageBytes;
    // A file may announce blocks smaller than the headers in it.
    std::vector<char> header(std::max(size, mdx::tagHeaderBytes));
    const auto item = static_cast<std::uint16_t>((mdx::itemKey + shape.length + 3) / 4 * 4);
    store32(header.data() + mdx::root, root);
    store32(header.data() + mdx::tagPages, blockPages);
    header[mdx::format] = static_cast<char>(mdx::formatPlain | (tag.unique ? mdx::formatUnique : 0) |
                                            (tag.descending ? mdx::formatDescending : 0));
    header[mdx::keyType] = static_cast<char>(shape.type);
    store16(header.data() + mdx::keyLength, shape.length);
    store16(header.data() + mdx::maxKeys, static_cast<std::uint16_t>((size - mdx::blockOverhead) / item));
    store16(header.data() + mdx::secondaryType, shape.type == KeyType::Date ? 1 : 0);
    store16(header.data() + mdx::itemLength, item);
    header[mdx::unique] = tag.unique ? 1 : 0;
    putText(header.data() + mdx::expression, tag.expression);
    store32(header.data() + mdx::firstLeaf, root);
    store32(header.data() + mdx::lastLeaf, root);
    encodeHeaderDate(header.data() + mdx::indexed);
    header[mdx::plainColumn] = shape.isPlain ? 1 : 0;
    if (!tag.condition.empty()) {
        header[mdx::hasCondition] = 1;
        putText(header.data() + mdx::condition, tag.condition);
    }
    header.resize(size);
    return header;
}

// Writes a row of the tag table for each tag, and the name tree over them.
void encodeTagTable(std::span<char> head, const std::vector<TagDefinition>& tags,
                    const std::vector<KeyShape>& shapes, const std::vector<PageNumber>& headerPages) {
    for (std::size_t i = 0; i < tags.size(); ++i) {
        char* entry = head.data() + mdx::tagTable + (i + 1) * mdx::tagEntrySize;
        store32(entry + mdx::entryHeaderPage, headerPages[i]);
        putText(entry + mdx::entryName, tags[i].name);
        entry[mdx::entryFormat] = shapes[i].isPlain ? 0x10 : 0x00;
        entry[mdx::entryTwo] = 2;
        entry[mdx::entryKeyType] = static_cast<char>(shapes[i].type);
    }
    linkNames(head, tags);
}

void encodeHead(std::span<char> head, const Schema& schema, const std::string& tableName,
                std::size_t tagCount, unsigned blockPages, std::uint32_t pages) {
    head[mdx::version] = 2;
    encodeHeaderDate(head.data() + mdx::created);
    putText(head.data() + mdx::tableName, std::string_view(tableName).substr(0, mdx::tableNameSize));
    store16(head.data() + mdx::blockPages, static_cast<std::uint16_t>(blockPages));
    store16(head.data() + mdx::blockBytes, static_cast<std::uint16_t>(blockPages * pageBytes));
    head[mdx::production] = 1;
    head[mdx::tagSlots] = static_cast<char>(mdx::maxTags + 1);
    head[mdx::tagSlotSize] = static_cast<char>(mdx::tagEntrySize);
    store16(head.data() + mdx::tagsInUse, static_cast<std::uint16_t>(tagCount));
    head[mdx::nextTag] = static_cast<char>(tagCount + 1);
    head[mdx::languageDriver] = static_cast<char>(schema.languageDriver);
    store32(head.data() + mdx::pageCount, pages);
    encodeHeaderDate(head.data() + mdx::updated);
    std::memcpy(head.data() + mdx::ownHead, mdx::ownHeadMagic, 8);
}

} // namespace

void IndexFile::checkTags(const std::string& path, const Schema& schema,
                          const std::vector<TagDefinition>& tags, unsigned blockPages) {
    static_cast<void>(shapesOf(tags, schema, blockPages * pageBytes, path));
}

void IndexFile::format(File& file, const Schema& schema, const std::string& tableName,
                       const std::vector<TagDefinition>& tags, const UpdateStamp& stamp,
                       unsigned blockPages) {
    const std::vector<KeyShape> shapes = shapesOf(tags, schema, blockPages * pageBytes, file.path());
    std::vector<PageNumber> headerPages; // each followed by an empty root
    for (std::size_t i = 0; i < tags.size(); ++i) {
        headerPages.push_back(static_cast<PageNumber>(mdx::firstBlock + i * 2 * blockPages));
    }
    const auto pages = static_cast<PageNumber>(mdx::firstBlock + tags.size() * 2 * blockPages);
    std::vector<char> head(mdx::headBytes);
    encodeHead(head, schema, tableName, tags.size(), blockPages, pages);
    // Marked unfinished until everything is written; then comes the caller's stamp.
    std::ranges::copy(encodeStamp({.present = true, .inUpdate = true}), head.begin() + mdx::stamp);
    encodeTagTable(head, tags, shapes, headerPages);
    file.write(0, head);
    const std::vector<char> emptyLeaf(blockPages * pageBytes);
    for (std::size_t i = 0; i < tags.size(); ++i) {
        const PageNumber root = headerPages[i] + blockPages;
        file.write(std::uint64_t{root} * pageBytes, emptyLeaf);
        file.write(std::uint64_t{headerPages[i]} * pageBytes,
                   encodeTagHeader(tags[i], shapes[i], root, blockPages));
    }
    file.resize(std::uint64_t{pages} * pageBytes);
    file.write(mdx::stamp, encodeStamp(stamp));
}

std::vector<char> IndexFile::freshHead(const Schema& schema) const {
    std::vector<char> head(mdx::headBytes);
    const std::string name = baseName(path()); // keeps one extension if the file replaces another one
    encodeHead(head, schema, name.substr(0, name.find('.')), tags_.size(), blockPages(), announcedPages());
    std::vector<TagDefinition> definitions;
    std::vector<KeyShape> shapes;
    std::vector<PageNumber> headerPages;
    for (const Tag& tag : tags_) {
        definitions.push_back(tag.definition);
        shapes.push_back({tag.keyType, tag.keyLength, tag.key && tag.key->isPlainColumn()});
        headerPages.push_back(tag.headerPage);
    }
    encodeTagTable(head, definitions, shapes, headerPages);
    // Keeps what changes with use: creation date, free list, stamp.
    readBytes(mdx::created, std::span(head).subspan(mdx::created, 3));
    readBytes(mdx::freeList, std::span(head).subspan(mdx::freeList, 4));
    readBytes(mdx::stamp, std::span(head).subspan(mdx::stamp, mdx::stampSize));
    // Copying between systems may change the letter case of a file's name; the name inside stays.
    std::array<char, mdx::tableNameSize> stored{};
    readBytes(mdx::tableName, stored);
    if (sameName({stored.data(), stored.size()}, {head.data() + mdx::tableName, stored.size()})) {
        std::ranges::copy(stored, head.begin() + mdx::tableName);
    }
    return head;
}

std::vector<char> IndexFile::freshTagHeader(const Tag& tag) const {
    const KeyShape shape{tag.keyType, tag.keyLength, tag.key && tag.key->isPlainColumn()};
    std::vector<char> header = encodeTagHeader(tag.definition, shape, 0, blockPages());
    std::vector<char> buffer;
    const char* stored = block(tag.headerPage, buffer);
    const auto keep = [&](std::size_t offset, std::size_t size) {
        std::memcpy(header.data() + offset, stored + offset, size);
    };
    keep(mdx::root, 8); // and the size in pages
    keep(mdx::changes, 1);
    keep(mdx::holdsKeys, 1);
    keep(mdx::firstLeaf, 8);
    keep(mdx::indexed, 3);
    store16(header.data() + mdx::itemLength, tag.itemLength);
    store16(header.data() + mdx::maxKeys, tag.maxKeys);
    return header;
}

} // namespace dbase
