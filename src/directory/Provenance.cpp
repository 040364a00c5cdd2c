// Reads the table of provenance.
#include "directory/Provenance.h"

#include <algorithm>
#include <tuple>

#include "dbase/system/large_memory.h"
#include "dbase/table/bulk_loader.h"
#include "dbase/table/table_exchange.h"

namespace ambrel::directory {
namespace {

constexpr std::string_view openedSigns = "-EHC"; // in the order of RangeOpening, and then: cut
constexpr std::size_t cutSign = 3;

std::size_t signOf(const JoinedStretch& row, std::size_t bound) {
    return row.cut.at(bound) ? cutSign : static_cast<std::size_t>(row.opened.at(bound));
}

auto orderOf(const EarlierRow& row) { return std::tie(row.street, row.postalCode, row.ordinal, row.key); }

unsigned valueOf(char openedSign) {
    for (unsigned value = 1; value < openedSigns.size(); ++value) {
        if (openedSigns[value] == openedSign) {
            return value;
        }
    }
    return 0; // whatever else it is
}

} // namespace

std::string openedText(const JoinedStretch& row) {
    std::string text;
    for (std::size_t bound = 0; bound < row.bounds.size(); ++bound) {
        text += openedSigns[signOf(row, bound)];
    }
    return text;
}

std::uint8_t packed(std::string_view openedText) {
    unsigned result = 0;
    for (const char sign : openedText) {
        result = result << 2 | valueOf(sign);
    }
    return static_cast<std::uint8_t>(result & 0xFFU);
}

std::uint8_t packed(const JoinedStretch& row) {
    unsigned result = 0;
    for (std::size_t bound = 0; bound < row.bounds.size(); ++bound) {
        result = result << 2 | static_cast<unsigned>(signOf(row, bound));
    }
    return static_cast<std::uint8_t>(result);
}

EarlierEdition readProvenance(const StoredRows& table, const LoadingProgress& progress) {
    EarlierEdition earlier;
    const ProvenanceRecord record(table.schema());
    const dbase::RecordNumber count = table.recordCount();
    earlier.streets.reserve(count);
    dbase::preferLargePages(earlier.streets.data(), count * sizeof(EarlierRow));
    const auto take = [&](dbase::RecordNumber number, std::span<const char> bytes) {
        reportStep(progress, "PROCEDEN", number, count);
        if (!record.isOfOffice(bytes)) {
            return;
        }
        if (const std::string_view date = record.edition(bytes); date > earlier.date) {
            earlier.date = date;
        }
        const std::optional<std::uint32_t> key = record.key(bytes);
        const std::string_view official = record.official(bytes);
        if (const auto street = key ? OfficialKey::fromText(official) : std::nullopt) {
            earlier.streets.push_back({.street = street->street,
                                       .fingerprint = record.fingerprint(bytes),
                                       .key = *key,
                                       .provenance = number,
                                       .postalCode = street->postalCode,
                                       .ordinal = street->ordinal,
                                       .opened = packed(record.opened(bytes)),
                                       .isNameShortened = record.isNameShortened(bytes)});
        } else if (const auto place = OfficialPlaceKey::fromText(official); place && !key) {
            earlier.places.push_back(
                {*place, record.fingerprint(bytes), std::string(record.wholeName(bytes)), number});
        }
    };
    table.forEach(take, [&](dbase::RecordNumber, std::span<const char> bytes) {
        if (const auto key = record.isOfOffice(bytes) ? record.key(bytes) : std::nullopt) {
            earlier.goneKeys.push_back(*key);
        }
    });
    const auto precedes = [](const EarlierRow& one, const EarlierRow& other) {
        return orderOf(one) < orderOf(other);
    };
    if (!std::ranges::is_sorted(earlier.streets, precedes)) {
        std::ranges::sort(earlier.streets, precedes);
    }
    std::ranges::sort(earlier.places, {}, &EarlierPlace::official);
    return earlier;
}

bool lacksColumns(const std::string& tableFile) {
    const dbase::Schema schema = StoredRows(tableFile, StoredRows::Others::AreKeptOut).schema();
    return !schema.find("HUELLA") || !schema.find("NOMBRE");
}

void renewProvenanceTable(const std::string& tableFile) {
    if (!lacksColumns(tableFile)) {
        return;
    }
    dbase::TableExchange exchange({tableFile});
    const StoredRows present(tableFile, StoredRows::Others::AreKeptOut);
    dbase::BulkLoader renewed(exchange.table(0), provenanceTable());
    std::vector<char> row(renewed.schema().recordLength, ' ');
    present.forEach([&](dbase::RecordNumber, std::span<const char> bytes) { // of other sources as well
        for (const dbase::Column& column : renewed.schema().columns) {
            if (const auto position = present.schema().find(column.name)) {
                const dbase::Column& before = present.schema().columns[*position];
                std::ranges::copy(bytes.subspan(before.offset, std::min(before.width, column.width)),
                                  row.begin() + column.offset);
            }
        }
        renewed.add(row);
    });
    renewed.finish();
    exchange.commit();
}

} // namespace ambrel::directory
