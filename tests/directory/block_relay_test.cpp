// Blocks between two threads: all arrive in their order, and a failure on either side ends both.
#include "directory/BlockRelay.h"

#include <chrono>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace ambrel::directory {
namespace {

constexpr int many = 1000; // times round the relay

/// Passes numbers on in another thread.
template<class Relay>
std::jthread passNumbers(Relay& relay, int last) {
    return relay.start([&relay, last] {
        for (int number = 1; number <= last; ++number) {
            relay.toFill() = number;
            relay.passOn();
        }
        relay.end();
    });
}

TEST(BlockRelay, EveryBlockArrivesInItsOrder) {
    for (const int last : {0, 1, 7, 8, 9, 16, 17, many}) {
        BlockRelay<int> relay;
        const std::jthread filling = passNumbers(relay, last);
        int seen = 0;
        relay.useAll([&](int number) { EXPECT_EQ(number, ++seen); });
        EXPECT_EQ(seen, last);
    }
}

TEST(BlockRelay, TheSlowerSideIsWaitedFor) {
    BlockRelay<int> relay;
    const std::jthread filling = passNumbers(relay, 40);
    int seen = 0;
    relay.useAll([&](int number) {
        std::this_thread::sleep_for(std::chrono::microseconds(number % 10 == 0 ? 2000 : 0));
        EXPECT_EQ(number, ++seen);
    });
    EXPECT_EQ(seen, 40);
}

TEST(BlockRelay, WhatTheFillingSideThrowsEndsTheOther) {
    BlockRelay<int> relay;
    const std::jthread filling = relay.start([&] {
        relay.toFill() = 1;
        relay.passOn();
        throw std::runtime_error("broken file");
    });
    try {
        relay.useAll([](int) {});
        FAIL() << "nothing was thrown";
    } catch (const std::runtime_error& error) {
        EXPECT_EQ(std::string(error.what()), "broken file");
    }
}

TEST(BlockRelay, WhatTheEmptyingSideThrowsEndsTheOther) {
    BlockRelay<int> relay;
    const std::jthread filling = passNumbers(relay, many); // would wait for ever
    EXPECT_THROW(relay.useAll([](int number) {
        if (number == 5) {
            throw std::runtime_error("enough");
        }
    }),
                 std::runtime_error);
    EXPECT_THROW(relay.requireSuccess(), std::runtime_error);
}

} // namespace
} // namespace ambrel::directory
