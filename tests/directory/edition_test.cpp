// Whole editions made into rows.
#include "directory/Edition.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <set>

#include "support/TemporaryFolder.h"
#include "tools/edition/NextEdition.h"

namespace ambrel::directory {
namespace {

/// What is known of a row.
struct Kept {
    StreetId street;
    std::string type, name, municipality;
    JoinedStretch stretch;
};

class EditionTest : public ::testing::Test {
protected:
    EditionFiles write(const std::vector<edition::Place>& places, const edition::Options& options) {
        const edition::Files files = edition::writeEdition(folder.path(), places, options);
        return {files.stretches, files.streets, files.pseudoStreets, files.units, files.municipalities, {}};
    }
    static std::vector<Kept> rowsOf(Edition& read, RangeOpening opening) {
        std::vector<Kept> rows;
        StreetTypeCodes types({{"CL", "CALLE", "CARRER"}, {"AV", "AVENIDA", "AVINGUDA"}});
        read.forEachStreet(opening, types, [&](const OfficialStreet& street) {
            for (const JoinedStretch& row : street.rows) {
                rows.push_back({street.id, std::string(street.type), std::string(street.name),
                                std::string(street.municipality), row});
            }
        });
        return rows;
    }
    static std::string keyOfRow(const Kept& row) {
        return OfficialKey{row.street, row.stretch.postalCode, row.stretch.ordinal}.text();
    }
    TemporaryFolder folder;
};

TEST_F(EditionTest, EveryObservedNumberKeepsTheCodeThatTheOfficeGivesIt) {
    const auto places = edition::inventedPlaces(104);
    const edition::Options options{.stretches = 8000};
    Edition read(write(places, options));
    EXPECT_EQ(read.date(), "2025-06-30");
    for (const RangeOpening opening : {RangeOpening::None, RangeOpening::Ends, RangeOpening::Gaps}) {
        std::map<StreetId, std::vector<JoinedStretch>> byStreet;
        std::set<OfficialKey> keys;
        for (const Kept& row : rowsOf(read, opening)) {
            byStreet[row.street].push_back(row.stretch);
            EXPECT_TRUE(keys.insert({row.street, row.stretch.postalCode, row.stretch.ordinal}).second)
                << "a key twice";
            EXPECT_LE(row.name.size(), 45U);
            EXPECT_FALSE(row.name.empty());
            EXPECT_FALSE(row.municipality.empty());
        }
        std::size_t checked = 0;
        edition::forEachStreet(places, options, [&](const edition::Street& street) {
            for (const edition::Side& side : street.sides) {
                const auto& rows = byStreet[streetId(street.place->code, street.isPseudo, street.key)];
                const std::size_t at = side.numbering == '2' ? 2 : 0;
                const bool isThere = std::ranges::any_of(rows, [&](const JoinedStretch& row) {
                    return row.postalCode == side.postalCode &&
                           (side.numbering == '0' ||
                            (row.bounds[at] <= side.first && side.last <= row.bounds[at + 1]));
                });
                EXPECT_TRUE(isThere) << street.name << ' ' << side.first;
                ++checked;
            }
        });
        EXPECT_GT(checked, 5000U);
    }
}

TEST_F(EditionTest, StreetsOfDifferentNamesNeverBecomeOne) {
    const auto places = edition::inventedPlaces(3); // large ones, with many long names
    const edition::Options options{.stretches = 9000};
    Edition read(write(places, options));
    std::map<std::pair<PlaceCode, std::string>, std::set<StreetId>> byName;
    for (const Kept& row : rowsOf(read, RangeOpening::Ends)) {
        byName[{placeOf(row.street), row.name}].insert(row.street);
    }
    std::map<StreetId, std::string> whole;
    edition::forEachStreet(places, options, [&](const edition::Street& street) {
        whole[streetId(street.place->code, street.isPseudo, street.key)] =
            street.isListed ? street.name : street.name.substr(0, 25);
    });
    std::size_t longNames = 0;
    for (const auto& [name, ids] : byName) {
        for (const StreetId id : ids) {
            EXPECT_TRUE(whole[id] == whole[*ids.begin()])
                << name.second << ": " << whole[id] << ", " << whole[*ids.begin()];
            longNames += whole[id].size() > 45 ? 1 : 0;
        }
    }
    EXPECT_GT(longNames, 5U);
}

TEST_F(EditionTest, BothLayoutsAndAllWaysOfWritingLinesGiveTheSameRows) {
    const auto places = edition::inventedPlaces(52);
    std::vector<std::string> rows;
    for (const edition::Options& options :
         {edition::Options{.stretches = 2000}, edition::Options{.stretches = 2000, .repeatsName = false},
          edition::Options{.stretches = 2000, .cutsBlanks = true},
          edition::Options{.stretches = 2000, .hasMoreColumns = true}}) {
        Edition read(write(places, options));
        std::string all;
        for (const Kept& row : rowsOf(read, RangeOpening::Ends)) {
            all += OfficialKey{row.street, row.stretch.postalCode, row.stretch.ordinal}.text() + row.type +
                   row.name + row.municipality + '\n';
        }
        rows.push_back(all);
    }
    EXPECT_GT(rows[0].size(), 10000U);
    EXPECT_EQ(rows[1], rows[0]);
    EXPECT_EQ(rows[2], rows[0]);
    EXPECT_EQ(rows[3], rows[0]);
}

TEST_F(EditionTest, LinesInAnyOrderGiveTheSameRows) {
    const EditionFiles files = write(edition::inventedPlaces(104), {.stretches = 4000});
    const auto textOf = [&] {
        Edition read(files);
        std::string all;
        for (const Kept& row : rowsOf(read, RangeOpening::Ends)) {
            all += OfficialKey{row.street, row.stretch.postalCode, row.stretch.ordinal}.text() + row.name;
            for (const auto bound : row.stretch.bounds) {
                all += ' ' + std::to_string(bound);
            }
            all += '\n';
        }
        return all;
    };
    const std::string before = textOf();
    EXPECT_GT(before.size(), 10000U);

    std::vector<std::string> lines;
    std::ifstream in(files.stretches);
    for (std::string line; std::getline(in, line);) {
        lines.push_back(line);
    }
    in.close();
    std::shuffle(lines.begin(), lines.end(), std::mt19937(7));
    std::ofstream out(files.stretches);
    for (const std::string& line : lines) {
        out << line << '\n';
    }
    out.close();
    EXPECT_EQ(textOf(), before);
}

TEST_F(EditionTest, OnlyTheProvincesAskedForAreRead) {
    EditionFiles files = write(edition::inventedPlaces(104), {.stretches = 2000});
    files.provinces = {9, 28};
    Edition read(files);
    std::set<unsigned> provinces;
    for (const Kept& row : rowsOf(read, RangeOpening::None)) {
        provinces.insert(placeOf(row.street) / 1000);
    }
    EXPECT_EQ(provinces, (std::set<unsigned>{9, 28}));
    std::set<unsigned> ofPlaces;
    for (const PlaceRow& row : read.places().rows()) {
        ofPlaces.insert(row.official.place / 1000);
    }
    EXPECT_EQ(ofPlaces, provinces);
}

TEST_F(EditionTest, WithoutTheirFilePseudoStreetsAreLeftOutAndCounted) {
    EditionFiles files = write(edition::inventedPlaces(10), {.stretches = 1000});
    files.pseudoStreets.clear();
    Edition read(files);
    EXPECT_GT(read.notes().ofPseudoStreets, 10U);
    const std::vector<Kept> rows = rowsOf(read, RangeOpening::None);
    EXPECT_GT(rows.size(), 100U);
    EXPECT_TRUE(std::ranges::none_of(rows, [](const Kept& row) { return isPseudo(row.street); }));
}

TEST_F(EditionTest, AStreetThatIsNotListedTakesTheNameOfItsStretches) {
    const auto places = edition::inventedPlaces(3);
    const edition::Options options{.stretches = 9000};
    Edition read(write(places, options));
    const auto rows = rowsOf(read, RangeOpening::None);
    std::size_t checked = 0;
    edition::forEachStreet(places, options, [&](const edition::Street& street) {
        if (street.isListed || street.isPseudo || street.sides.empty()) {
            return;
        }
        const auto found = std::ranges::find_if(rows, [&](const Kept& row) {
            return row.street == streetId(street.place->code, false, street.key);
        });
        ASSERT_NE(found, rows.end());
        std::string shortName = street.name.substr(0, 25);
        shortName.resize(shortName.find_last_not_of(' ') + 1);
        EXPECT_EQ(found->name, shortName);
        ++checked;
    });
    EXPECT_GT(checked, 0U);
    EXPECT_EQ(read.notes().streetsWithoutName, checked);
}

TEST_F(EditionTest, TooManyBadLinesEndItAndAFewDoNot) {
    Edition read(write(edition::inventedPlaces(10), {.stretches = 3000, .badEvery = 150}));
    EXPECT_FALSE(read.notes().badLines.empty());
    EXPECT_FALSE(rowsOf(read, RangeOpening::None).empty());
    const EditionFiles worse = write(edition::inventedPlaces(10), {.stretches = 3000, .badEvery = 50});
    try {
        const Edition refused(worse);
        FAIL();
    } catch (const loading::Failure& failure) {
        EXPECT_NE(std::string(failure.what()).find("más de una línea de cada cien"), std::string::npos);
    }
}

TEST_F(EditionTest, TheOneHalfAYearLaterDiffersInSomethingOfEachKind) {
    const edition::Files files =
        edition::writeEdition(folder.path(), edition::inventedPlaces(104), {.stretches = 8000});
    std::filesystem::create_directory(folder / "siguiente");
    const edition::Files later = edition::writeNextEdition(files, folder / "siguiente", 50);
    std::map<std::string, Kept> before;
    Edition first({files.stretches, files.streets, files.pseudoStreets, files.units, files.municipalities});
    for (Kept& row : rowsOf(first, RangeOpening::None)) {
        const std::string key = keyOfRow(row);
        before.emplace(key, std::move(row));
    }
    Edition second({later.stretches, later.streets, later.pseudoStreets, later.units, later.municipalities});
    EXPECT_EQ(second.date(), "2025-12-31");
    EXPECT_TRUE(second.notes().badLines.empty());
    std::size_t added = 0, renamed = 0, moved = 0, same = 0;
    for (const Kept& row : rowsOf(second, RangeOpening::None)) {
        const auto found = before.find(keyOfRow(row));
        if (found == before.end()) {
            ++added;
            continue;
        }
        renamed += found->second.name != row.name ? 1 : 0;
        moved += found->second.stretch.bounds != row.stretch.bounds ? 1 : 0;
        same += found->second.name == row.name && found->second.stretch.bounds == row.stretch.bounds ? 1 : 0;
        before.erase(found);
    }
    EXPECT_GT(added, 20U);
    EXPECT_GT(before.size(), 20U) << "gone, or with another code";
    EXPECT_GT(renamed, 20U);
    EXPECT_GT(moved, 10U);
    EXPECT_GT(same, (added + before.size() + renamed + moved) * 5);
}

} // namespace
} // namespace ambrel::directory
