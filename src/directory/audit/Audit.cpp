// Runs an audit: municipalities first, because streets are compared with them.
#include "directory/audit/Audit.h"

#include <algorithm>
#include <numeric>
#include <optional>
#include <set>
#include <vector>

#include "dbase/dataset/dataset.h"
#include "dbase/system/counted.h"
#include "dbase/system/databases.h"
#include "directory/audit/AuditedRows.h"
#include "directory/audit/KeyAudit.h"
#include "directory/audit/MunicipalityAudit.h"
#include "directory/audit/NameAudit.h"
#include "directory/audit/SameStreetAudit.h"
#include "directory/audit/StreetRowAudit.h"
#include "loading/ansi_text.h"

namespace ambrel::directory {

namespace {

std::optional<std::set<std::string, std::less<>>> streetTypes(const std::string& database) {
    if (!dbase::findTableFile(dbase::databaseFolder(database), "TIPO_VIA")) {
        return std::nullopt;
    }
    dbase::Dataset table(database, "TIPO_VIA");
    table.open();
    std::set<std::string, std::less<>> types;
    const dbase::Field& code = table.field("CODIGO");
    table.first();
    for (bool isOnRow = !table.isEmpty(); isOnRow; isOnRow = table.next()) {
        types.emplace(code.view());
    }
    return types;
}

class Run {
public:
    Run(const std::string& database, const FindingSink& sink, const AuditProgress& progress)
        : database_(database), sink_(sink), progress_(progress) {
        rows_ = recordCount(database, AuditedTable::Municipalities) +
                recordCount(database, AuditedTable::Streets);
    }

    AuditTotals run() {
        const PlaceBook book = readPlaces(database_);
        forEachMunicipality(database_, [&](const MunicipalityRow& row) {
            auditMunicipalityRow(row, book, counted_);
            ++totals_.municipalityRows;
            step();
        });
        auditStreets(book);
        return std::move(totals_);
    }

private:
    void auditStreets(const PlaceBook& book) {
        const auto types = streetTypes(database_);
        const StreetRowAudit rowAudit(book, types ? &*types : nullptr);
        SameStreetAudit streets(book, database_, counted_);
        KeyAudit keys;
        std::vector<bool> hasStreets(book.places().size());
        forEachStreet(database_, "VIA", [&](const StreetRow& row) {
            const auto place = book.placeOf(row);
            hasFinding_ = false;
            rowAudit.audit(row, place, counted_);
            if (place) {
                hasStreets[*place] = true;
            } else { // may be any of them
                for (const PlaceBook::Use& use : book.usesOf(row.postalCode)) {
                    hasStreets[use.place] = true;
                }
            }
            keys.add(row, counted_);
            streets.add(row, place, hasFinding_);
            ++totals_.streetRows;
            step();
        });
        streets.finish();
        auditMunicipalities(book, streets.counts(), hasStreets);
        keys.finish(counted_);
        totals_.userKeys = keys.userKeys();
        totals_.highestUserKey = keys.highestUserKey();
    }

    void auditMunicipalities(const PlaceBook& book, const std::vector<SameStreetAudit::StreetCount>& counts,
                             const std::vector<bool>& hasStreets) {
        for (std::size_t i = 0; i < counts.size(); ++i) {
            const PlaceBook::Place& place = book.places()[i];
            const std::string name = loading::utf8FromAnsi(place.name);
            ProvinceCount& province = totals_.provinces[place.ineCode.substr(0, 2)];
            ++province.municipalities;
            province.withStreets += hasStreets[i] ? 1 : 0;
            province.streets += counts[i].streets;
            province.withCode += counts[i].withCode;
            province.withRanges += counts[i].withRanges;
            province.withFindings += counts[i].withFindings;
            totals_.streets += counts[i].streets;
            totals_.hiddenStreets += counts[i].hidden;
            if (!hasStreets[i]) {
                counted_(withText(aboutMunicipality(place), FindingClass::NoStreets,
                                  "POSTAL no tiene ninguna vía de " + name));
            }
            if (counts[i].hidden > 0) {
                counted_(withText(aboutMunicipality(place), FindingClass::HiddenStreets,
                                  name + ": " + std::to_string(counts[i].hidden) + " de sus " +
                                      dbase::counted(counts[i].streets, "vía", "vías") +
                                      (counts[i].hidden == 1 ? " va" : " van") +
                                      " en la clave detrás de la de otro municipio, como " +
                                      counts[i].hiddenExample));
            }
        }
    }

    void count(const Finding& finding) {
        ++totals_.findings.at(static_cast<std::size_t>(finding.kind));
        hasFinding_ = hasFinding_ || finding.severity != Severity::Note;
    }

    void step() {
        constexpr std::uint64_t interval = 1024;
        if (++done_ % interval == 0 && progress_) {
            progress_(done_, rows_);
        }
    }

    const std::string& database_;
    const FindingSink& sink_;
    const AuditProgress& progress_;
    std::uint64_t rows_ = 0, done_ = 0;
    bool hasFinding_ = false; // the row at hand
    AuditTotals totals_;
    FindingSink counted_ = [this](const Finding& finding) {
        count(finding);
        sink_(finding);
    };
};

} // namespace

ProvinceCount& ProvinceCount::operator+=(const ProvinceCount& other) {
    municipalities += other.municipalities;
    withStreets += other.withStreets;
    streets += other.streets;
    withCode += other.withCode;
    withRanges += other.withRanges;
    withFindings += other.withFindings;
    return *this;
}

std::uint64_t AuditTotals::all() const {
    return std::accumulate(findings.begin(), findings.end(), std::uint64_t{0});
}

std::uint64_t AuditTotals::keysLeft() const {
    constexpr std::uint64_t blockSize = 1'000'000, highest = 99'999'999;
    return highestUserKey.empty() ? blockSize : highest - std::stoull(highestUserKey);
}

AuditTotals auditTables(const std::string& database, const FindingSink& sink, const AuditProgress& progress) {
    return Run(database, sink, progress).run();
}

} // namespace ambrel::directory
