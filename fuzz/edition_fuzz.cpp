// Any bytes as editions of the official directory, one over the other, and what users do to the tables
// meanwhile. What the tables hold afterwards is checked, and that the same edition again changes nothing.
#include "DirectoryTables.h"
#include "EditionChecks.h"
#include "InventedEdition.h"
#include "dbase/dbf/codec.h"
#include "directory/DirectoryRecords.h"
#include "directory/EditionDifference.h"
#include "directory/LeadingZeros.h"
#include "loading/failure.h"

namespace {

using namespace ambrel::directory;
using trial::Bytes;
using trial::Choices;

class Trial {
public:
    explicit Trial(std::string_view bytes) : choices_(bytes) {}

    void run() {
        constexpr unsigned mostLoads = 3;
        for (unsigned loads = 0; loads < mostLoads && choices_.areLeft();) {
            const unsigned what = choices_.below(16);
            if (what < 12) {
                edition_.amend(choices_);
            } else if (what < 15) {
                useAsUser(tables_.of(DirectoryTable::Streets), tables_.schema(DirectoryTable::Streets));
            } else {
                load();
                ++loads;
            }
        }
        load();
    }

private:
    void load() {
        const auto opening = static_cast<RangeOpening>(choices_.below(3));
        const EditionFiles files = edition_.write(choices_);
        try {
            trial::PlayedChanges loaded(tables_.all());
            play(files, opening, loaded);
            trial::requireSound(tables_, tables_.all(), loaded.rows());
            tables_.all() = loaded.rows();
        } catch (const loading::Failure&) {
            return; // a refusal is a valid answer
        }
        trial::PlayedChanges again(tables_.all());
        play(files, opening, again);
        trial::require(again.count() == 0);
    }

    void play(const EditionFiles& files, RangeOpening opening, trial::PlayedChanges& changes) {
        static const std::vector<StreetTypeRow> types = {
            {"CL", "CALLE", "CARRER"}, {"AV", "AVENIDA", "AVINGUDA"}, {"PZ", "PLAZA", ""}};
        tables_.use([&](const StoredTables& tables) {
            Edition edition(files);
            const PlaceRecord record(tables.places->schema());
            tables.places->forEach([&](dbase::RecordNumber, std::span<const char> row) {
                const auto place = record.isEntity(row) ? std::nullopt : record.place(row);
                if (place) {
                    edition.places().addMunicipality(*place, record.name(row));
                }
            });
            if (!edition.places().hasMunicipalities()) {
                throw loading::Failure("nothing names municipalities");
            }
            StoredState state = readStoredState(tables, {});
            const LoadSummary summary = compareEdition(edition, opening, types, tables, state, changes, {});
            std::uint64_t conflicts = 0;
            for (const auto& [place, one] : summary.byMunicipality) {
                conflicts += one.conflicts;
            }
            trial::require(conflicts == summary.conflicts);
        });
    }

    /// Adds, changes, copies or deletes a row.
    void useAsUser(trial::DirectoryTables::Rows& rows, const dbase::Schema& schema) {
        const unsigned what = choices_.below(8);
        const std::size_t chosen = choices_.below(256);
        if (what < 3 || rows.empty()) {
            rows.emplace_back(schema.recordLength, ' ');
            fill(rows.back(), schema);
        } else if (Bytes& row = rows[chosen % rows.size()]; what < 6) {
            change(row, schema, choices_.below(6));
        } else if (what == 6) {
            row.front() = dbase::deletedMark;
        } else {
            rows.push_back(Bytes(row));
            put(rows.back(), schema, "CODIGO1", digits(99'000'000 + choices_.below(256), 8));
        }
    }

    void fill(Bytes& row, const dbase::Schema& schema) {
        const std::string key =
            digits((choices_.below(4) == 0 ? 9'000'000 : 99'000'000) + choices_.below(8), 8);
        put(row, schema, "CODIGO1", key);
        put(row, schema, "COD_INE", digits(choices_.place(), 5));
        for (unsigned column = 0; column < 4; ++column) {
            change(row, schema, column);
        }
    }

    void change(Bytes& row, const dbase::Schema& schema, unsigned column) {
        if (column == 0) {
            put(row, schema, "VIA", choices_.name().substr(0, 45));
        } else if (column == 1) {
            put(row, schema, "CODPOSTAL", digits(choices_.postalCode(), 5));
        } else if (column == 2) {
            put(row, schema, "TIPO_VIA", choices_.below(2) == 0 ? "CL" : "");
        } else if (column == 5) {
            put(row, schema, "MUNICIPI", choices_.name());
        } else {
            const bool isOdd = choices_.below(2) == 0;
            put(row, schema, isOdd ? "IMPAR_INI" : "PAR_INI", std::to_string(choices_.houseNumber()));
            const unsigned last = choices_.houseNumber();
            put(row, schema, isOdd ? "IMPAR_FIN" : "PAR_FIN", std::to_string(last == 9999 ? 999999 : last));
        }
    }

    static void put(Bytes& row, const dbase::Schema& schema, const char* column, std::string_view value) {
        const dbase::Column& its = schema.columns.at(*schema.find(column));
        dbase::encodeText(std::span(row).subspan(its.offset, its.width), value.substr(0, its.width));
    }

    Choices choices_;
    trial::InventedEdition edition_;
    trial::DirectoryTables tables_;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Trial({reinterpret_cast<const char*>(data), size}).run();
    return 0;
}
