// Blocks that two threads make: all are used in their order, and a failure of any step ends the others.
#include "directory/OrderedBlocks.h"

#include <atomic>
#include <chrono>
#include <set>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

namespace ambrel::directory {
namespace {

struct Block {
    int number = 0, made = 0;
};

/// Claims numbers from 1 to the last one.
auto countTo(int last) {
    return [next = 0, last](Block& block) mutable {
        block.number = ++next;
        return next <= last;
    };
}

void square(Block& block) { block.made = block.number * block.number; }

void wait() { std::this_thread::sleep_for(std::chrono::milliseconds(1)); }

TEST(OrderedBlocks, AllAreUsedInTheirOrder) {
    for (const int last : {0, 1, 7, 8, 9, 16, 17, 1000}) {
        OrderedBlocks<Block> blocks;
        auto claim = countTo(last);
        int seen = 0;
        blocks.run([&](Block& block) { return claim(block); }, square,
                   [&](const Block& block) {
                       EXPECT_EQ(block.number, ++seen);
                       EXPECT_EQ(block.made, seen * seen);
                   });
        EXPECT_EQ(seen, last);
    }
}

TEST(OrderedBlocks, OneThatTakesLongIsWaitedFor) {
    for (const int slow : {1, 2, 5}) {
        OrderedBlocks<Block> blocks;
        auto claim = countTo(60);
        int seen = 0;
        blocks.run([&](Block& block) { return claim(block); },
                   [&](Block& block) {
                       square(block);
                       if (block.number % slow == 0) {
                           wait();
                       }
                   },
                   [&](const Block& block) {
                       ++seen;
                       EXPECT_EQ(block.made, seen * seen);
                       if (seen % 7 == 0) {
                           wait();
                       }
                   });
        EXPECT_EQ(seen, 60);
    }
}

TEST(OrderedBlocks, NotManyAreMadeAhead) {
    OrderedBlocks<Block, 16> blocks;
    auto claim = countTo(200);
    std::atomic<int> made = 0;
    int used = 0;
    blocks.run([&](Block& block) { return claim(block); }, [&](Block&) { ++made; },
               [&](const Block&) {
                   wait();
                   EXPECT_LE(made.load(), ++used + 15);
               });
}

TEST(OrderedBlocks, WhatAnyStepThrowsIsThrownAndEndsTheOthers) {
    for (const int step : {0, 1, 2}) {
        OrderedBlocks<Block> blocks;
        int claimed = 0;
        const auto failAt = [&](int its, int number) {
            if (its == step && number == 40) {
                throw std::runtime_error("broken file");
            }
        };
        try {
            blocks.run(
                [&](Block& block) { // without end
                    block.number = ++claimed;
                    failAt(0, claimed);
                    return true;
                },
                [&](Block& block) { failAt(1, block.number); },
                [&](const Block& block) { failAt(2, block.number); });
            FAIL() << "nothing was thrown by step " << step;
        } catch (const std::runtime_error& error) {
            EXPECT_EQ(std::string(error.what()), "broken file");
        }
    }
}

} // namespace
} // namespace ambrel::directory
