// The rows that an edition gives POSTAL, PROCEDEN and MUNICIPI, as records.
#pragma once

#include <optional>
#include <string>

#include "dbase/table/table_definition.h"
#include "directory/DirectoryChange.h"
#include "directory/Edition.h"
#include "directory/RecordForm.h"

namespace ambrel::directory {

/// PROCEDEN, the table beside POSTAL that says where its rows come from. Longer names are cut there.
inline constexpr std::uint16_t provenanceNameWidth = 50;
[[nodiscard]] dbase::TableDefinition provenanceTable();
[[nodiscard]] dbase::Schema provenanceSchema();

/// Rows of POSTAL.
class StreetRecord {
public:
    explicit StreetRecord(const dbase::Schema& schema);

    // --- Any record; texts live as long as it does
    [[nodiscard]] std::optional<std::uint32_t> key(std::span<const char> record) const;
    [[nodiscard]] std::string_view type(std::span<const char> record) const;
    [[nodiscard]] std::string_view name(std::span<const char> record) const;
    [[nodiscard]] std::string_view postalCode(std::span<const char> record) const;
    [[nodiscard]] std::string_view municipality(std::span<const char> record) const;
    /// Of COD_INE; null where it holds none.
    [[nodiscard]] std::optional<PlaceCode> place(std::span<const char> record) const;
    /// Of the columns that an edition fills.
    [[nodiscard]] Fingerprint fingerprint(std::span<const char> record) const {
        return form_.fingerprint(record);
    }
    [[nodiscard]] SideBySide<Fingerprint>
    fingerprints(const SideBySide<std::span<const char>>& records) const {
        return form_.fingerprints(records);
    }
    [[nodiscard]] Bounds bounds(std::span<const char> record) const;

    /// The record of an official row, valid until the next one is written. `base`: the record whose other
    /// columns it keeps; empty for none.
    [[nodiscard]] std::span<const char> write(std::uint32_t key, const OfficialStreet& street,
                                              const JoinedStretch& row, std::span<const char> base = {});
    /// Has says() speak of a street, until the next one.
    void expect(const OfficialStreet& street);
    /// Whether a record's columns that an edition fills are, byte by byte, those that write() would write for
    /// a row of that street. Seen much faster than by writing: rows of a street differ in little.
    [[nodiscard]] bool says(std::span<const char> record, std::uint32_t key, const JoinedStretch& row);

private:
    RecordForm form_;
    RecordForm expected_;
    PlaceCode expectedPlace_ = 0; // in it
    Bounds expectedBounds_ = {};
    std::uint32_t expectedPostalCode_ = 0;
};

/// What PROCEDEN says of one row. Texts live as long as what they were taken from.
struct ProvenanceRow {
    std::optional<std::uint32_t> key = {}; // of a row of POSTAL
    std::string_view official = {};        // its key as text
    std::uint32_t line = 0;                // 0: not of a single one
    std::string_view opened = {};
    bool isNameShortened = false;
    Fingerprint fingerprint = 0;     // of the row; 0: not known
    std::string_view wholeName = {}; // of a shortened one; of a place, always

    /// Whatever their lines: those move from edition to edition.
    [[nodiscard]] bool saysTheSameAs(const ProvenanceRow& other) const;
};

/// Rows of PROCEDEN. Tables of earlier versions lack HUELLA and NOMBRE, which read as blank.
class ProvenanceRecord {
public:
    explicit ProvenanceRecord(const dbase::Schema& schema);

    /// Null for a row of another source.
    [[nodiscard]] std::optional<ProvenanceRow> read(std::span<const char> record) const;
    // --- Its columns one by one
    /// Whether the row is of this source.
    [[nodiscard]] bool isOfOffice(std::span<const char> record) const;
    [[nodiscard]] std::optional<std::uint32_t> key(std::span<const char> record) const;
    [[nodiscard]] std::string_view official(std::span<const char> record) const;
    [[nodiscard]] std::string_view opened(std::span<const char> record) const;
    [[nodiscard]] bool isNameShortened(std::span<const char> record) const;
    [[nodiscard]] Fingerprint fingerprint(std::span<const char> record) const;
    [[nodiscard]] std::string_view wholeName(std::span<const char> record) const;
    [[nodiscard]] std::string_view edition(std::span<const char> record) const;

    [[nodiscard]] std::span<const char> write(const ProvenanceRow& row, const std::string& edition,
                                              std::span<const char> base = {});

private:
    RecordForm form_;
};

/// Rows of MUNICIPI.
class PlaceRecord {
public:
    explicit PlaceRecord(const dbase::Schema& schema);

    [[nodiscard]] std::optional<PlaceCode> place(std::span<const char> record) const;
    [[nodiscard]] bool isEntity(std::span<const char> record) const;
    [[nodiscard]] std::string_view name(std::span<const char> record) const;
    [[nodiscard]] std::string_view postalCode(std::span<const char> record) const;
    [[nodiscard]] bool hasOneCode(std::span<const char> record) const;
    [[nodiscard]] Fingerprint fingerprint(std::span<const char> record) const {
        return form_.fingerprint(record);
    }
    [[nodiscard]] std::span<const char> write(const PlaceRow& row, std::span<const char> base = {});

private:
    RecordForm form_;
};

} // namespace ambrel::directory
