// Whatever is settled must be an address of the tables: the exact look-ups find it, with the same code.
#include <random>

#include <gtest/gtest.h>

#include "address/AddressResolution.h"
#include "address/AddressValidator.h"
#include "dbase/dataset/dataset.h"
#include "dbase/dataset/row_walk.h"
#include "sample/Sample.h"
#include "support/Seed.h"
#include "support/TableTest.h"

namespace postal_tests {
namespace {

using ambrel::GivenAddress;
using ambrel::JudgedAddress;

struct Row {
    std::string type, street, postalCode, municipality;
};

/// The streets of the sample tables.
std::vector<Row> sampleRows() {
    dbase::Dataset streets("DB", "POSTAL");
    const dbase::Field& type = streets.bindCharacter("TIPO_VIA", 3);
    const dbase::Field& name = streets.bindCharacter("VIA", 45);
    const dbase::Field& code = streets.bindCharacter("CODPOSTAL", 5);
    streets.open();
    const dbase::Field& municipality = streets.field("MUNICIPI");
    std::vector<Row> rows;
    dbase::forEachRow(streets, [&] {
        rows.push_back({type.text(), name.text(), code.text(), municipality.text()});
    });
    return rows;
}

class Mistakes {
public:
    explicit Mistakes(std::uint32_t seed) : random_(seed) {}

    GivenAddress write(const Row& row, const Row& other) {
        GivenAddress given;
        given.type = chance(3) ? "" : chance(5) ? other.type : row.type;
        given.street = slipped(chance(10) ? other.street : row.street);
        given.number = chance(4) ? "" : std::to_string(1 + below(chance(3) ? 9999 : 60));
        given.postalCode = chance(3) ? "" : chance(5) ? other.postalCode : row.postalCode;
        given.municipality = chance(8) ? "" : slipped(row.municipality);
        given.province = chance(3) ? row.postalCode.substr(0, 2) : "";
        return given;
    }
    std::size_t below(std::size_t limit) { return random_() % limit; }

private:
    bool chance(unsigned outOf) { return random_() % outOf == 0; }
    std::string slipped(std::string text) {
        for (unsigned slips = chance(2) ? 0 : 1 + random_() % 2; slips > 0 && !text.empty(); --slips) {
            const std::size_t at = below(text.size());
            if (chance(2)) {
                text.erase(at, 1);
            } else {
                text[at] = static_cast<char>('A' + below(26));
            }
        }
        return text;
    }

    std::mt19937 random_;
};

class SettledAddresses : public ambrel::test::TableTest {};

TEST_F(SettledAddresses, AreFoundExactlyWithTheSameCode) {
    ambrel::createSample(folder.path());
    const std::vector<Row> rows = sampleRows();
    const std::uint32_t seed = ambrel::test::seedOfThisRun();
    Mistakes mistakes(seed);
    ambrel::AddressValidator validator;
    int settled = 0;
    for (int i = 0; i < 1500; ++i) {
        const Row& row = rows[mistakes.below(rows.size())];
        const GivenAddress given = mistakes.write(row, rows[mistakes.below(rows.size())]);
        const JudgedAddress judged = validator.validate(given);
        if (!isSettled(judged.verdict)) {
            continue;
        }
        ++settled;
        const ambrel::ResolvedAddress found =
            ambrel::resolveAddress("DB", {.municipality = judged.municipality,
                                          .streetType = judged.type,
                                          .street = judged.street,
                                          .number = judged.number,
                                          .ineCode = judged.ineCode});
        EXPECT_TRUE(found.isExact() && found.postalCode == judged.postalCode)
            << "seed " << seed << ": " << given.type << ' ' << given.street << ' ' << given.number << ' '
            << given.postalCode << ' ' << given.municipality << " was judged " << judged.street << ' '
            << judged.postalCode << ", and the look-ups find " << found.street << ' ' << found.postalCode;
        EXPECT_FALSE(judged.postalCode.empty());
        EXPECT_GT(judged.confidence, 0.8);
    }
    EXPECT_GT(settled, 300);
}

} // namespace
} // namespace postal_tests
