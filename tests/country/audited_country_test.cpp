// What the checks of structure and content say of a country that was just loaded.
#include "country/Country.h"

#include <iostream>

#include "directory/audit/Audit.h"
#include "support/LongForm.h"

namespace country_tests {
namespace {

using namespace ambrel::directory;

class AuditedCountry : public Country {
protected:
    /// Whether it is a matter of the office's lines, or of the width of the key, and not of the load.
    static bool isOfficial(const Finding& finding) {
        switch (finding.kind) {
        case FindingClass::Gap: // ranges are opened at their ends only
        case FindingClass::HiddenStreets:
        case FindingClass::RepeatedRow:
            return finding.severity == Severity::Note;
        case FindingClass::Overlap: // two streets of a name, or doors of one number with two codes
            return finding.severity == Severity::Note || finding.text.find("9001") != std::string::npos;
        case FindingClass::ForeignPostalCode:
            return finding.table == AuditedTable::Municipalities &&
                   questions().hasCode(finding.key.substr(0, 5), finding.key.substr(6));
        default:
            return false;
        }
    }
};

TEST_F(AuditedCountry, HasNoFindingThatTheLoadMade) {
    std::map<std::string, std::uint64_t> counts;
    std::size_t reported = 0;
    const AuditTotals totals = auditTables("DB", [&](const Finding& finding) {
        ++counts[std::string(severityName(finding.severity)) + ' ' + std::string(className(finding.kind))];
        if (!isOfficial(finding) && ++reported <= 20) {
            ADD_FAILURE() << className(finding.kind) << ' ' << finding.key << ": " << finding.text;
        }
    });
    for (const auto& [kind, count] : counts) {
        std::cout << kind << ": " << count << '\n';
    }
    EXPECT_GT(totals.streetRows, 10'000U);
    EXPECT_EQ(totals.provinces.size(), 52U);
}

TEST_F(AuditedCountry, SaysHowManyStreetsAreHiddenFromASearchByTheKeyAlone) {
    std::map<std::string, std::uint64_t> hidden;
    const AuditTotals totals = auditTables("DB", [&](const Finding& finding) {
        if (finding.kind == FindingClass::HiddenStreets) { // "NAME: 32 de sus 41 vías van…"
            const std::size_t of = finding.text.find(" de sus ");
            hidden[finding.key] = std::stoull(finding.text.substr(finding.text.rfind(' ', of - 1)));
        }
    });
    EXPECT_EQ(hidden, questions().hiddenStreets());
    std::uint64_t all = 0;
    for (const auto& [place, count] : hidden) {
        all += count;
    }
    EXPECT_EQ(totals.hiddenStreets, all);
    const std::string told =
        ambcp("revisar " + tables() + " 2>&1 >/dev/null || test $? -eq 1"); // 1: there are findings
    EXPECT_NE(told.find(std::to_string(totals.streets) + " vías; " + std::to_string(all) +
                        " van en la clave detrás"),
              std::string::npos)
        << told;
    std::cout << all << " of " << totals.streets << " streets are hidden\n";
}

TEST_F(AuditedCountry, IsSoundInItsStructure) {
    const std::string checked = ambcp("comprobar " + tables());
    for (const std::string table : {"MUNICIPI", "POSTAL", "PROCEDEN", "TIPO_VIA"}) {
        EXPECT_NE(checked.find(table), std::string::npos) << checked;
    }
    EXPECT_EQ(checked.find("incorrecta"), std::string::npos) << checked;
}

TEST_F(AuditedCountry, IsSoundForReadersThatAreNotOurs) {
    if (std::system("perl -MDBD::XBase -e1 2>/dev/null") != 0) {
        GTEST_SKIP() << "wants Perl's DBD::XBase";
    }
    std::vector<std::string> all{"MUNICIPI", "POSTAL", "PROCEDEN"};
    all.resize(
        static_cast<std::size_t>(ambrel::test::longForm(3, 1))); // a million rows: many minutes and 3 GB
    for (const std::string& table : all) {
        const std::string command =
            std::string("perl ") + AMBREL_VERIFIER + ' ' + tables() + '/' + table + ".DBF >/dev/null";
        EXPECT_EQ(std::system(command.c_str()), 0) << command;
    }
}

} // namespace
} // namespace country_tests
