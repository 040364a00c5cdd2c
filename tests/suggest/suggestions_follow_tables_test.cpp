// Suggestions while the tables change, and how they are read.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <filesystem>
#include <new>

#include <sys/mman.h>

#include "data/PostalTables.h"
#include "dbase/dataset/dataset.h"
#include "dbase/support/ChildProcess.h"
#include "suggest/Suggestions.h"

namespace ambrel {
namespace {

using namespace std::chrono_literals;

class SuggestionsFollowTables : public postal_tests::PostalTables {
protected:
    SuggestionsFollowTables() {
        addMunicipalities({{"28079", "28001", "MADRID"}, {"29067", "29001", "MALAGA"}});
        addStreets({{"28000001", "VELAZQUEZ", "CL", "28001"}, {"28000002", "SERRANO", "CL", "28001"}});
    }
    static std::string first(Suggestions& suggestions, const std::string& text) {
        const auto found = suggestions.streets({.text = text, .ineCode = "28079"});
        return found.empty() ? std::string() : found.front().name;
    }
    void erase(const std::string& key) {
        dbase::Dataset table("DB", "POSTAL");
        table.open();
        goToStreet(table, key);
        table.erase();
    }
};

TEST_F(SuggestionsFollowTables, AddedStreetIsSuggestedAtOnce) {
    Suggestions suggestions;
    EXPECT_EQ(first(suggestions, "goia"), "");
    addStreets({{"28000003", "GOYA", "CL", "28001"}});
    EXPECT_EQ(first(suggestions, "goia"), "GOYA");
}

TEST_F(SuggestionsFollowTables, DeletedStreetIsNeverShown) {
    Suggestions suggestions;
    EXPECT_EQ(first(suggestions, "velazques"), "VELAZQUEZ");
    erase("28000001");
    EXPECT_EQ(first(suggestions, "velazques"), "");
}

TEST_F(SuggestionsFollowTables, ChangedPostalCodesAreThoseOfNow) {
    Suggestions suggestions;
    EXPECT_EQ(first(suggestions, "velazques"), "VELAZQUEZ");
    addStreets({{"28000009", "VELAZQUEZ", "CL", "28001", {1, 9}, {2, 8}, "28", "0", "28079"}});
    dbase::Dataset table("DB", "POSTAL");
    table.open();
    goToStreet(table, "28000009");
    table.edit();
    table.field("CODPOSTAL").setText("28999");
    table.post();
    const auto found = suggestions.streets({.text = "velazquez", .ineCode = "28079"});
    ASSERT_EQ(found.size(), 1U);
    // The row with the municipality's own code is the one that counts, though MUNICIPI lacks its code.
    EXPECT_EQ(found.front().postalCodes, std::vector<std::string>{"28999"});
}

TEST_F(SuggestionsFollowTables, RenamedMunicipalityIsFoundByItsNewName) {
    Suggestions suggestions;
    ASSERT_FALSE(suggestions.municipalities({"malaga"}).empty());
    dbase::Dataset table("DB", "MUNICIPI", "COD_INE");
    table.open();
    ASSERT_TRUE(table.seek({{"COD_INE", "29067"}}, dbase::SeekMode::Exact));
    table.edit();
    table.field("NOMBRE").setText("PICASSO");
    table.post();
    EXPECT_TRUE(suggestions.municipalities({"malaga"}).empty());
    EXPECT_EQ(suggestions.municipalities({"picaso"}).front().name, "PICASSO");
}

TEST_F(SuggestionsFollowTables, StreetOfACodeIsSuggestedWhicheverMunicipalitySharesItNow) {
    Suggestions suggestions;
    for (const StreetQuery& query : {StreetQuery{.text = "velasques", .postalCode = "28001"},
                                     StreetQuery{.text = "velasques", .province = "28"}}) {
        const auto found = suggestions.streets(query);
        ASSERT_EQ(found.size(), 1U);
        EXPECT_EQ(found.front().ineCode, "28079");
    }
    addMunicipalities({{"28144", "28001", "SOTO"}});
    for (const StreetQuery& query : {StreetQuery{.text = "velasques", .postalCode = "28001"},
                                     StreetQuery{.text = "velasques", .province = "28"}}) {
        const auto found = suggestions.streets(query);
        ASSERT_EQ(found.size(), 1U);
        EXPECT_EQ(found.front().ineCode, "") << "it may be a street of either";
    }
}

TEST_F(SuggestionsFollowTables, ProvinceIsReadInPiecesBeforeTheFirstQuestion) {
    std::vector<postal_tests::StreetRow> rows;
    for (int i = 0; i < 3000; ++i) {
        rows.push_back({std::to_string(28100000 + i), "CALLE NUMERO " + std::to_string(i), "CL", "28001"});
    }
    addStreets(rows);
    Suggestions suggestions;
    const StreetQuery query{.text = "velasques", .ineCode = "28079"};
    int pieces = 1;
    while (!suggestions.prepare(query, 0ms)) {
        ASSERT_LT(++pieces, 10'000);
    }
    EXPECT_GT(pieces, 20);
    EXPECT_EQ(first(suggestions, "velasques"), "VELAZQUEZ");
    EXPECT_TRUE(suggestions.prepare(query, 0ms));
}

TEST_F(SuggestionsFollowTables, ProvinceUsedLongestAgoGivesWayWhenMemoryIsShort) {
    std::vector<postal_tests::StreetRow> rows;
    for (int province = 1; province <= 9; ++province) {
        const std::string digits = "0" + std::to_string(province);
        addMunicipalities({{digits + "001", digits + "001", "PUEBLO " + std::to_string(province)}});
        for (int i = 0; i < 200; ++i) {
            rows.push_back({digits + std::to_string(100000 + i),
                            "VIA " + std::to_string(i) + " LARGA",
                            "CL",
                            digits + "001",
                            {1, 9999},
                            {2, 9998},
                            digits});
        }
    }
    addStreets(rows);
    constexpr std::size_t budget = 100'000;
    Suggestions suggestions("DB", {.memory = budget});
    static_cast<void>(suggestions.municipalities({"pueblo"}));
    const std::size_t municipalities = suggestions.memoryInUse();
    for (int round = 0; round < 2; ++round) {
        for (int province = 1; province <= 9; ++province) {
            const std::string code = "0" + std::to_string(province) + "001";
            ASSERT_EQ(suggestions.streets({.text = "via 7 largo", .ineCode = code}).front().name,
                      "VIA 7 LARGA");
            ASSERT_LE(suggestions.memoryInUse() - municipalities, budget);
        }
    }
}

TEST_F(SuggestionsFollowTables, MunicipalityWithStreetsInTwoProvincesIsSearchedInBoth) {
    addMunicipalities({{"09109", "01118", "CONDADO"}, {"09109", "09215", "CONDADO"}});
    addStreets({{"01000001", "IGLESIA", "CL", "01118", {1, 9999}, {2, 9998}, "01"},
                {"09000001", "IGLESIA", "CL", "09215", {1, 9999}, {2, 9998}, "09"},
                {"09000002", "FUENTE", "CL", "09215", {1, 9999}, {2, 9998}, "09"}});
    Suggestions suggestions("DB", {.memory = 1}); // where not even one of them has room
    const auto found = suggestions.streets({.text = "iglesa", .ineCode = "09109"});
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found.front().postalCodes, (std::vector<std::string>{"01118", "09215"}));
    EXPECT_EQ(suggestions.streets({.text = "fuente", .ineCode = "09109"}).size(), 1U);
}

/// Another station, which changes a street without pause, now and then adds "NUEVA 0", "NUEVA 1"... and notes
/// when. Start it while this process has no table open.
class TirelessStation {
public:
    using Clock = std::chrono::steady_clock; // the same for all processes

    TirelessStation() : shared_(share()), process_([this](const auto&) { return write(); }) {}
    ~TirelessStation() {
        shared_->ends = true;
        process_.join();
        munmap(shared_, sizeof(Shared));
    }
    TirelessStation(const TirelessStation&) = delete;
    TirelessStation& operator=(const TirelessStation&) = delete;

    /// How many streets had been added at a moment.
    [[nodiscard]] std::size_t countAt(Clock::time_point moment) const {
        const auto end = shared_->posted.begin() + static_cast<std::ptrdiff_t>(shared_->count.load());
        return static_cast<std::size_t>(std::lower_bound(shared_->posted.begin(), end, moment) -
                                        shared_->posted.begin());
    }

private:
    struct Shared {
        std::atomic<bool> ends = false;
        std::atomic<std::size_t> count = 0;
        std::array<Clock::time_point, 100'000> posted;
    };

    static Shared* share() {
        void* const memory =
            mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
        return memory == MAP_FAILED ? throw std::bad_alloc() : new (memory) Shared;
    }

    int write() {
        dbase::Dataset table("DB", "POSTAL");
        table.open();
        for (std::size_t i = 0; !shared_->ends && i < shared_->posted.size(); ++i) {
            table.append();
            table.field("CODIGO1").setText(std::to_string(29'000'000 + i));
            table.field("PROVINCIA").setText("28");
            table.field("TIPO_VIA").setText("CL");
            table.field("VIA").setText("NUEVA " + std::to_string(i));
            table.field("CODPOSTAL").setText("28001");
            table.field("COD_INE").setText("28079");
            table.post();
            shared_->posted[i] = Clock::now();
            shared_->count = i + 1;
            for (int change = 0; change < 100 && !shared_->ends; ++change) {
                table.edit();
                table.field("IMPAR_INI").setInteger(change);
                table.post();
            }
        }
        return 0;
    }

    Shared* shared_;
    dbase::test::ChildProcess process_;
};

TEST_F(SuggestionsFollowTables, AnswersWhileAnotherStationWritesWithoutPauseAreASecondOldAtMost) {
    std::vector<postal_tests::StreetRow> rows;
    for (int i = 0; i < 2000; ++i) {
        rows.push_back({std::to_string(28100000 + i), "VEREDA " + std::to_string(i), "CL", "28001"});
    }
    addStreets(rows);
    const TirelessStation station;
    Suggestions suggestions;
    std::size_t before = 0, proofs = 0;
    while (proofs < 10) {
        const std::size_t old = station.countAt(TirelessStation::Clock::now() - 1s);
        ASSERT_EQ(first(suggestions, "velasques"), "VELAZQUEZ"); // ends, however much is written
        if (old > before) {
            const std::string name = "NUEVA " + std::to_string(old - 1);
            ASSERT_EQ(first(suggestions, name), name);
            before = old;
            ++proofs;
        }
    }
    // Nor do the questions keep the other station from writing: each proof is about later rows.
}

TEST_F(SuggestionsFollowTables, MissingTableOfTypesOnlyCostsTheOrderUntilItIsThere) {
    addStreetTypes({{"ZZ", "AVENIDA"}});
    addStreets({{"28000003", "SERRANO", "ZZ", "28001"}});
    const auto firstType = [](Suggestions& suggestions) {
        return suggestions.streets({.text = "avenida serano", .ineCode = "28079"}).front().type;
    };
    const std::filesystem::path table(folder / "TIPO_VIA.DBF"), away(folder / "AWAY");
    std::filesystem::rename(table, away);
    Suggestions suggestions;
    EXPECT_EQ(firstType(suggestions), "CL");
    std::filesystem::rename(away, table);
    EXPECT_EQ(firstType(suggestions), "ZZ");
}

} // namespace
} // namespace ambrel
