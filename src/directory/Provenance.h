// What the tables hold of earlier editions.
#pragma once

#include <string>
#include <vector>

#include "directory/DirectoryRecords.h"
#include "directory/StoredRows.h"

namespace ambrel::directory {

/// What has become of a row since an edition brought it.
enum class RowState : std::uint8_t {
    Deleted, // by hand
    Lost,    // with the whole table, which is to be filled again
    Changed, // by hand
    Untouched
};

/// A row of POSTAL that an edition brought, in little room: there are millions.
struct EarlierRow {
    StreetId street = 0;
    Fingerprint fingerprint = 0; // as it came; 0: not known
    std::uint32_t key = 0;
    dbase::RecordNumber provenance = 0, record = 0; // in PROCEDEN and POSTAL; 0: there is none
    std::uint32_t postalCode = 0;
    std::uint16_t ordinal = 0;
    std::uint8_t opened = 0; // two bits for each bound, as packed()
    bool isNameShortened = false;
    RowState state = RowState::Deleted;
};

/// A row of MUNICIPI that an edition brought.
struct EarlierPlace {
    OfficialPlaceKey official;
    Fingerprint fingerprint = 0;
    std::string name; // cut at 50 characters
    dbase::RecordNumber provenance = 0, record = 0;
    RowState state = RowState::Deleted;
};

/// In the order of their official keys. What they have become is for others to find out.
struct EarlierEdition {
    std::vector<EarlierRow> streets;
    std::vector<EarlierPlace> places;
    std::string date;                    // of the latest row
    std::vector<std::uint32_t> goneKeys; // CODIGO1 of rows that went with an edition, as far as it is known
};

/// ABIERTO.
[[nodiscard]] std::string openedText(const JoinedStretch& row);
[[nodiscard]] std::uint8_t packed(std::string_view openedText);
[[nodiscard]] std::uint8_t packed(const JoinedStretch& row);

/// Whether a PROCEDEN of an earlier version lacks columns. Errors: dbase::Error.
[[nodiscard]] bool lacksColumns(const std::string& tableFile);
/// Gives it those, blank. Errors: dbase::Error.
void renewProvenanceTable(const std::string& tableFile);

/// Reads PROCEDEN. Rows that make no sense are left out: what they speak of counts as the users'.
[[nodiscard]] EarlierEdition readProvenance(const StoredRows& table, const LoadingProgress& progress);

} // namespace ambrel::directory
