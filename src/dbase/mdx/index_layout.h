// Offsets inside an .MDX: file header, tag table, tag headers, blocks.
#pragma once

#include <cstddef>
#include <cstdint>

namespace dbase::mdx {

// File header (pages 0 and 1 hold it and the tag table up to page 3).
inline constexpr std::size_t version = 0;
inline constexpr std::size_t created = 1;
inline constexpr std::size_t tableName = 4;
inline constexpr std::size_t tableNameSize = 16;
inline constexpr std::size_t blockPages = 20;
inline constexpr std::size_t blockBytes = 22;
inline constexpr std::size_t production = 24;
inline constexpr std::size_t tagSlots = 25;
inline constexpr std::size_t tagSlotSize = 26;
inline constexpr std::size_t tagsInUse = 28;
inline constexpr std::size_t nextTag = 30;
inline constexpr std::size_t languageDriver = 31;
inline constexpr std::size_t pageCount = 32;
inline constexpr std::size_t freeList = 36;
inline constexpr std::size_t updated = 44;
inline constexpr std::size_t stamp = 480; // ours, in bytes that the format leaves unused
inline constexpr std::size_t stampSize = 32;
inline constexpr char stampMagic[9] = "AMBINDX1";
inline constexpr std::size_t stampMagicSize = 8; // from here on, offsets inside the stamp
inline constexpr std::size_t stampMark = 8;
inline constexpr std::size_t stampRecords = 12;
inline constexpr std::size_t stampCounter = 16;
inline constexpr std::size_t stampSession = 24;
inline constexpr std::size_t ownHead = 472; // ours too: says that we wrote every byte of the headers
inline constexpr char ownHeadMagic[9] = "AMBHEAD1";

inline constexpr std::size_t tagTable = 512;
inline constexpr std::size_t tagEntrySize = 32;
inline constexpr std::size_t maxTags = 47;
inline constexpr std::uint32_t firstBlock = 4;
inline constexpr std::size_t headBytes = 2048;

// Tag table entry.
inline constexpr std::size_t entryHeaderPage = 0;
inline constexpr std::size_t entryName = 4;
inline constexpr std::size_t entryNameSize = 11;
inline constexpr std::size_t entryFormat = 15;
inline constexpr std::size_t entryLess = 16;
inline constexpr std::size_t entryGreater = 17;
inline constexpr std::size_t entryParent = 18;
inline constexpr std::size_t entryTwo = 19;
inline constexpr std::size_t entryKeyType = 20;

// Tag header.
inline constexpr std::size_t root = 0;
inline constexpr std::size_t tagPages = 4;
inline constexpr std::size_t format = 8;
inline constexpr std::size_t keyType = 9;
inline constexpr std::size_t keyLength = 12;
inline constexpr std::size_t maxKeys = 14;
inline constexpr std::size_t secondaryType = 16;
inline constexpr std::size_t itemLength = 18;
inline constexpr std::size_t changes = 20;
inline constexpr std::size_t unique = 23;
inline constexpr std::size_t expression = 24;
inline constexpr std::size_t textSize = 220;
inline constexpr std::size_t hasCondition = 245;
inline constexpr std::size_t holdsKeys = 246;
inline constexpr std::size_t firstLeaf = 248;
inline constexpr std::size_t lastLeaf = 252;
inline constexpr std::size_t indexed = 257;
inline constexpr std::size_t plainColumn = 480;
inline constexpr std::size_t condition = 762;
inline constexpr std::size_t tagHeaderBytes = condition + textSize; // the part that readers use

inline constexpr std::uint8_t formatUnique = 0x40;
inline constexpr std::uint8_t formatPlain = 0x10;
inline constexpr std::uint8_t formatDescending = 0x08;

// Block of a tree.
inline constexpr std::size_t keyCount = 0;
inline constexpr std::size_t freeNext = 4;
inline constexpr std::size_t items = 8;
inline constexpr std::size_t blockOverhead = items + 4; // the last child's number follows the last item
inline constexpr std::size_t itemKey = 4;               // in an item: after the record's or child's number

} // namespace dbase::mdx
