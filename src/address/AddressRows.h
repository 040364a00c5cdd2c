// The rows of a file of addresses, block by block.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "address/AddressFile.h"
#include "address/JudgedAddress.h"
#include "loading/csv.h"

namespace ambrel {

/// One row, as read and as judged.
struct AddressRow {
    enum class Kind {
        Address,
        Broken, // cannot be read; judged.reason says why
        Passed  // an empty line, or a piece of a very long one: stays as it is
    };
    Kind kind = Kind::Address;
    bool isOpen = false;      // a broken one whose quotes are not closed
    std::size_t rawBegin = 0; // in the text of the block
    std::size_t rawEnd = 0;   // with its line end
    std::uint64_t bytes = 0;  // in the file, about
    std::uint64_t line = 0, number = 0;
    GivenAddress given = {};
    JudgedAddress judged = {};
    std::string added = {}; // what is written after it
};

/// Consecutive rows. Their text, and what is added, is in UTF-8 if the file is in UTF-16, otherwise in the
/// file's encoding.
struct AddressBlock {
    std::string text;
    std::vector<AddressRow> rows;
};

/// Reads a file as blocks of rows.
class AddressRows {
public:
    /// Reads as far as the heading. Errors: loading::Failure.
    AddressRows(const AddressFileInput& input, const AddressFileOptions& options);

    [[nodiscard]] const loading::CsvFormat& format() const { return format_; }
    /// Of the columns, in UTF-8.
    [[nodiscard]] const std::vector<std::string>& names() const { return names_; }
    /// The heading as it was read, with the empty lines in front of it.
    [[nodiscard]] const std::string& heading() const { return heading_; }

    /// The texts of the next row, in UTF-8; null at the end.
    [[nodiscard]] std::optional<std::vector<std::string>> nextTexts();

    void setPlaces(const AddressColumnPlaces& places) { places_ = places; }
    /// The next rows of the part; perhaps none while those in front of it are passed over.
    [[nodiscard]] AddressBlock nextBlock();
    [[nodiscard]] bool isAtEnd() const { return isAtEnd_; }
    /// The bytes of the part, as they are counted for rowSize(); null if not known.
    [[nodiscard]] std::optional<std::uint64_t> size() const;

private:
    struct OpenedText {
        loading::CsvFormat format;
        loading::TextSource source; // in UTF-8 instead of UTF-16
    };
    [[nodiscard]] static OpenedText openText(const AddressFileInput& input,
                                             const AddressFileOptions& options);
    AddressRows(OpenedText text, const AddressFileInput& input, const AddressFileOptions& options);

    [[nodiscard]] bool readRow();
    [[nodiscard]] bool hidesRows() const;
    void add(AddressBlock& block);
    void addBroken(AddressBlock& block);
    AddressRow& addRaw(AddressBlock& block, AddressRow::Kind kind);
    void fill(AddressRow& row) const;
    [[nodiscard]] std::string textOf(std::string_view raw) const;

    loading::CsvFormat format_;
    loading::CsvReader csv_;
    std::vector<std::string> names_;
    std::string heading_;
    AddressColumnPlaces places_{};
    bool isReadable_ = true; // the row read last
    bool isAtEnd_ = false;
    std::uint64_t begin_, end_;         // of the part, in the file
    std::optional<std::uint64_t> size_; // of the file
    std::uint64_t position_ = 0;
    std::uint64_t number_ = 0;
};

} // namespace ambrel
