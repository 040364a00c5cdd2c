// The reading side of an .MDX: file header, tag table, tag headers, blocks.
#include "dbase/mdx/index_file.h"

#include <algorithm>
#include <cstring>

#include "dbase/dbf/codepage.h"
#include "dbase/dbf/collation.h"
#include "dbase/dbf/dates.h"
#include "dbase/mdx/index_layout.h"
#include "dbase/system/bytes.h"
#include "dbase/system/error.h"
#include "dbase/system/names.h"
#include "dbase/system/quoted.h"

namespace dbase {

namespace {

std::string textAt(std::span<const char> bytes, std::size_t offset, std::size_t size) {
    const std::string_view raw(bytes.data() + offset, size);
    return std::string(raw.substr(0, raw.find('\0')));
}

constexpr std::size_t mostBlockPages = 64;
constexpr std::size_t mostPadding = 8; // bytes between an item's key and the next item

// Stands for a condition beyond the end of a block too small for it.
constexpr std::string_view unreadableCondition = "?";

// Parses key and condition, or notes why they are not understood.
void parseTexts(Tag& tag, const Schema& schema, bool isConditionReadable) {
    try {
        Expression key = Expression::parse(tag.definition.expression, schema, Dialect::Index);
        const KeyType made = key.type() == ValueType::Text     ? KeyType::Character
                             : key.type() == ValueType::Number ? KeyType::Numeric
                                                               : KeyType::Date;
        if (key.type() == ValueType::Logical || made != tag.keyType) {
            throw Error(ErrorCode::BadExpression, {}, "la expresión no da el tipo de clave del tag");
        }
        if (!tag.definition.condition.empty() && !isConditionReadable) {
            throw Error(ErrorCode::BadExpression, {}, "su condición no cabe en bloques tan pequeños");
        }
        if (!tag.definition.condition.empty()) {
            tag.condition = Expression::parse(tag.definition.condition, schema, Dialect::Index);
            if (tag.condition->type() != ValueType::Logical) {
                throw Error(ErrorCode::BadExpression, {}, "la condición no es lógica");
            }
        }
        tag.key = std::move(key);
    } catch (const Error& error) {
        tag.condition.reset();
        tag.problem = "el tag " + tag.definition.name + " no se entiende (" +
                      inQuotes(tag.definition.expression) + "): " + error.what();
    }
}

} // namespace

IndexFile::IndexFile(std::unique_ptr<File> file, const Schema& schema) : file_(std::move(file)) {
    knownSize_ = file_->size();
    if (knownSize_ >= maxFileSize) {
        throw Error(ErrorCode::TooLarge, path(), "el índice tiene 2 GiB o más");
    }
    if (knownSize_ < mdx::headBytes) {
        throw Error(ErrorCode::BadIndex, path(), "el índice está cortado; ejecute \"ambcp reindexar\"");
    }
    std::vector<char> head(mdx::headBytes);
    readBytes(0, head);
    blockSize_ = std::size_t{load16(head.data() + mdx::blockPages)} * pageBytes;
    languageDriver_ = static_cast<std::uint8_t>(head[mdx::languageDriver]);
    if (head[mdx::version] != 2 || blockSize_ < pageBytes || blockSize_ > mostBlockPages * pageBytes) {
        throw Error(ErrorCode::BadIndex, path(),
                    "la cabecera no es la de un índice; ejecute \"ambcp reindexar\"");
    }
    readTags(schema);
}

void IndexFile::readBytes(std::uint64_t offset, std::span<char> bytes) const {
    if (const char* view = file_->view()) {
        std::memcpy(bytes.data(), view + offset, bytes.size());
    } else {
        file_->read(offset, bytes);
    }
}

void IndexFile::readTags(const Schema& schema) {
    std::vector<char> head(mdx::headBytes);
    readBytes(0, head);
    const std::size_t count = load16(head.data() + mdx::tagsInUse);
    if (count > mdx::maxTags || static_cast<std::uint8_t>(head[mdx::tagSlotSize]) != mdx::tagEntrySize) {
        throw Error(ErrorCode::BadIndex, path(),
                    "la lista de tags dice " + std::to_string(count) + " tags; ejecute \"ambcp reindexar\"");
    }
    for (std::size_t i = 1; i <= count; ++i) {
        const std::span<const char> entry(head.data() + mdx::tagTable + i * mdx::tagEntrySize,
                                          mdx::tagEntrySize);
        Tag tag = readTag(entry, schema, i);
        if (findTag(tag.definition.name) == nullptr) {
            tags_.push_back(std::move(tag));
        }
    }
}

Error IndexFile::badTag(const Tag& tag, std::size_t number, const std::string& what) const {
    return {ErrorCode::BadIndex, path(),
            "tag " + std::to_string(number) + " (" + tag.definition.name + "): " + what +
                "; ejecute \"ambcp reindexar\""};
}

Tag IndexFile::readTag(std::span<const char> entry, const Schema& schema, std::size_t number) const {
    Tag tag;
    tag.definition.name = textAt(entry, mdx::entryName, mdx::entryNameSize);
    tag.headerPage = load32(entry.data() + mdx::entryHeaderPage);
    if (tag.definition.name.empty()) {
        throw badTag(tag, number, "no tiene nombre");
    }
    if (tag.definition.name.size() == mdx::entryNameSize) {
        throw badTag(tag, number, "su nombre no termina");
    }
    const std::uint64_t offset = std::uint64_t{tag.headerPage} * pageBytes;
    const std::string page = " (página " + std::to_string(tag.headerPage) + ")";
    if (tag.headerPage < mdx::firstBlock || offset + blockSize_ > knownSize_) {
        throw badTag(tag, number, "su cabecera queda fuera del fichero" + page);
    }
    if (std::any_of(tags_.begin(), tags_.end(), [&](const Tag& other) {
            return tag.headerPage < other.headerPage + blockPages() &&
                   other.headerPage < tag.headerPage + blockPages();
        })) {
        throw badTag(tag, number, "comparte su cabecera con otro tag" + page);
    }
    readTagHeader(tag, number);
    tag.order = KeyOrder(tag.keyType, driverCollates(schema.languageDriver), tag.definition.descending);
    parseTexts(tag, schema, blockSize_ >= mdx::tagHeaderBytes);
    return tag;
}

void IndexFile::readTagHeader(Tag& tag, std::size_t number) const {
    std::vector<char> header(mdx::tagHeaderBytes); // zeros after a smaller block
    readBytes(std::uint64_t{tag.headerPage} * pageBytes,
              std::span(header).first(std::min(blockSize_, mdx::tagHeaderBytes)));
    const char type = header[mdx::keyType] == 'F' ? 'N' : header[mdx::keyType];
    tag.keyLength = load16(header.data() + mdx::keyLength);
    tag.itemLength = load16(header.data() + mdx::itemLength);
    const bool lengthFits = type == 'C'   ? tag.keyLength >= 1 && tag.keyLength <= maxKeyLength
                            : type == 'N' ? tag.keyLength == numericKeyLength
                            : type == 'D' ? tag.keyLength == dateKeyLength
                                          : false;
    if (!lengthFits || tag.itemLength < mdx::itemKey + tag.keyLength ||
        tag.itemLength > mdx::itemKey + tag.keyLength + mostPadding) {
        throw badTag(tag, number, "tipo o longitud de clave imposibles");
    }
    tag.maxKeys = static_cast<std::uint16_t>((blockSize_ - mdx::blockOverhead) / tag.itemLength);
    if (tag.maxKeys < 3) {
        throw badTag(tag, number, "la clave no cabe en sus páginas");
    }
    tag.keyType = static_cast<KeyType>(type);
    const auto format = static_cast<std::uint8_t>(header[mdx::format]);
    tag.definition.unique = (format & mdx::formatUnique) != 0 || header[mdx::unique] == 1;
    tag.definition.descending = (format & mdx::formatDescending) != 0;
    tag.definition.expression = textAt(header, mdx::expression, mdx::textSize);
    if (header[mdx::hasCondition] != 0) {
        tag.definition.condition = blockSize_ < mdx::tagHeaderBytes
                                       ? std::string(unreadableCondition)
                                       : textAt(header, mdx::condition, mdx::textSize);
    }
}

const Tag* IndexFile::findTag(std::string_view name) const {
    const auto found = std::find_if(tags_.begin(), tags_.end(),
                                    [&](const Tag& tag) { return sameName(tag.definition.name, name); });
    return found == tags_.end() ? nullptr : &*found;
}

bool IndexFile::hasOwnHead() const {
    char bytes[8];
    readBytes(mdx::ownHead, bytes);
    return std::memcmp(bytes, mdx::ownHeadMagic, sizeof bytes) == 0;
}

UpdateStamp IndexFile::stamp() const {
    StampBytes bytes;
    readBytes(mdx::stamp, bytes);
    return decodeStamp(bytes);
}

// A change stores two numbers of eight bytes: the mark, with the records covered, first at its beginning and
// last at its end, so that the counter belongs to it wherever a death comes between. A network folder gets
// both together.
void IndexFile::writeStamp(const UpdateStamp& stamp) {
    const StampBytes bytes = encodeStamp(stamp);
    if (const UpdateStamp now = this->stamp();
        file_->isRemote() || !now.present || now.session != stamp.session) {
        file_->write(mdx::stamp, bytes);
        return;
    }
    const auto writeNumber = [&](std::size_t at) {
        file_->rewrite(mdx::stamp + at, std::span(bytes).subspan(at, sizeof(std::uint64_t)));
    };
    writeNumber(stamp.inUpdate ? mdx::stampMark : mdx::stampCounter);
    writeNumber(stamp.inUpdate ? mdx::stampCounter : mdx::stampMark);
}

bool IndexFile::reaches(std::uint64_t end) const {
    if (end > knownSize_) {
        knownSize_ =
            std::min(file_->size(), maxFileSize); // a view ends there, however far the file has grown
    }
    return end <= knownSize_;
}

PageNumber IndexFile::pageCount() const { return static_cast<PageNumber>(file_->size() / pageBytes); }

PageNumber IndexFile::announcedPages() const {
    char bytes[4];
    readBytes(mdx::pageCount, bytes);
    return load32(bytes);
}

PageNumber IndexFile::freeList() const {
    char bytes[4];
    readBytes(mdx::freeList, bytes);
    return load32(bytes);
}

void IndexFile::damaged(PageNumber page, const std::string& what) const {
    throw Error(ErrorCode::BadIndex, path(),
                "página " + std::to_string(page) + ": " + what + "; ejecute \"ambcp reindexar\"");
}

const char* IndexFile::block(PageNumber page, std::vector<char>& buffer) const {
    if (page < mdx::firstBlock) { // also among the changes, where the file header is shorter than a block
        damaged(page, "queda fuera del fichero");
    }
    if (!changes_.empty()) {
        if (const auto found = changes_.find(page); found != changes_.end()) {
            return found->second.bytes.data();
        }
    }
    const std::uint64_t offset = std::uint64_t{page} * pageBytes;
    if (!reaches(offset + blockSize_)) {
        damaged(page, "queda fuera del fichero");
    }
    if (const char* view = file_->view()) {
        return view + offset;
    }
    buffer.resize(blockSize_);
    file_->read(offset, buffer);
    return buffer.data();
}

void IndexFile::prefetch(PageNumber page) const {
    const std::uint64_t offset = std::uint64_t{page} * pageBytes;
    if (const char* view = file_->view(); view != nullptr && offset + blockSize_ <= knownSize_) {
        for (std::size_t line = 0; line < blockSize_; line += 64) {
            __builtin_prefetch(view + offset + line);
        }
    }
}

void IndexFile::confirmBlock(PageNumber page) const {
    if (!changes_.contains(page)) {
        knownSize_ = 0;
        if (!reaches(std::uint64_t{page} * pageBytes + blockSize_)) {
            throw Error(ErrorCode::Io, path(), "otro programa ha cortado el fichero mientras se leía");
        }
    }
}

TreeRoot IndexFile::treeRoot(const Tag& tag) const {
    std::vector<char> buffer;
    const char* header = block(tag.headerPage, buffer);
    return {load32(header + mdx::root), load32(header + mdx::firstLeaf), load32(header + mdx::lastLeaf),
            header[mdx::holdsKeys] != 0};
}

} // namespace dbase
