#include "report/FrequentTexts.h"

#include <map>

#include <gtest/gtest.h>

using report::FrequentTexts;

TEST(FrequentTexts, CountExactlyWhileThereIsRoom) {
    FrequentTexts texts(4);
    for (const char* text : {"b", "a", "b", "c", "b", "a"}) {
        texts.add(text);
    }
    const auto most = texts.most(2);
    ASSERT_EQ(most.size(), 2U);
    EXPECT_EQ(most[0].text, "b");
    EXPECT_EQ(most[0].times, 3U);
    EXPECT_EQ(most[1].text, "a");
    EXPECT_EQ(texts.mostMissed(), 0U);
}

TEST(FrequentTexts, OfEqualCountsGiveTheOrderOfTheTexts) {
    FrequentTexts texts;
    for (const char* text : {"z", "m", "a"}) {
        texts.add(text);
    }
    const auto most = texts.most(10);
    ASSERT_EQ(most.size(), 3U);
    EXPECT_EQ(most[0].text, "a");
    EXPECT_EQ(most[2].text, "z");
}

TEST(FrequentTexts, KeepTheFrequentOnesAmongAnyNumberOfRareOnes) {
    FrequentTexts texts(50);
    std::map<std::string, std::uint64_t> real;
    for (int i = 0; i < 100'000; ++i) {
        const std::string text = i % 10 == 0   ? "often"
                                 : i % 25 == 1 ? "at times"
                                               : "once " + std::to_string(i);
        texts.add(text);
        ++real[text];
        ASSERT_LE(texts.size(), 100U);
    }
    const auto most = texts.most(2);
    ASSERT_EQ(most.size(), 2U);
    EXPECT_EQ(most[0].text, "often");
    EXPECT_EQ(most[1].text, "at times");
    EXPECT_GT(texts.mostMissed(), 0U);
    for (const auto& [text, times] : most) {
        EXPECT_LE(times, real[text]);
        EXPECT_GE(times + texts.mostMissed(), real[text]);
    }
}
