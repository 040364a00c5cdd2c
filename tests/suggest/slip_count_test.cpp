// Slips between words, against a plain dynamic programme.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

#include "suggest/SlipCount.h"
#include "support/Seed.h"

namespace ambrel::suggest {
namespace {

/// Slips by the definition: letters wrong, missing, added, or exchanged with their neighbour.
unsigned slipsByDefinition(const std::string& a, const std::string& b) {
    std::vector<std::vector<unsigned>> cost(a.size() + 1, std::vector<unsigned>(b.size() + 1));
    for (unsigned i = 0; i <= a.size(); ++i) {
        for (unsigned j = 0; j <= b.size(); ++j) {
            if (i == 0 || j == 0) {
                cost[i][j] = i + j;
                continue;
            }
            cost[i][j] = std::min({cost[i - 1][j] + 1, cost[i][j - 1] + 1,
                                   cost[i - 1][j - 1] + (a[i - 1] == b[j - 1] ? 0U : 1U)});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
                cost[i][j] = std::min(cost[i][j], cost[i - 2][j - 2] + 1);
            }
        }
    }
    return cost[a.size()][b.size()];
}

TEST(SlipCount, EachKindOfSlipCountsOnce) {
    const SlipCount alcala("ALCALA");
    EXPECT_EQ(alcala.to("ALCALA").whole, 0U);
    EXPECT_EQ(alcala.to("ALCOLA").whole, 1U);
    EXPECT_EQ(alcala.to("ALCAA").whole, 1U);
    EXPECT_EQ(alcala.to("ALCALLA").whole, 1U);
    EXPECT_EQ(alcala.to("ALACLA").whole, 1U);
    EXPECT_EQ(alcala.to("").whole, 6U);
    EXPECT_EQ(SlipCount("").to("SOL").whole, 3U);
}

TEST(SlipCount, BeginningIsTheNearestOne) {
    const SlipCount::Found found = SlipCount("VELASQ").to("VELAZQUEZ");
    EXPECT_EQ(found.beginning, 1U);
    EXPECT_EQ(found.beginsLength, 6U);
    EXPECT_EQ(SlipCount("VELAZ").to("VELAZQUEZ").beginning, 0U);
}

TEST(SlipCount, AgreesWithTheDefinitionOnRandomWords) {
    std::mt19937 random(ambrel::test::seedOfThisRun());
    const auto word = [&] {
        std::string text(random() % 14, 'A');
        for (char& letter : text) {
            letter = "ABC\xD1"
                     "9"[random() % 5];
        }
        return text;
    };
    for (int i = 0; i < 5000; ++i) {
        const std::string a = word(), b = word();
        const SlipCount::Found found = SlipCount(a).to(b);
        ASSERT_EQ(found.whole, slipsByDefinition(a, b)) << a << ' ' << b;
        unsigned fewest = ~0U;
        for (std::size_t length = 0; length <= b.size(); ++length) {
            fewest = std::min(fewest, slipsByDefinition(a, b.substr(0, length)));
        }
        ASSERT_EQ(found.beginning, fewest) << a << ' ' << b;
    }
}

} // namespace
} // namespace ambrel::suggest
