// Typed texts in the spelling of the tables.
#include "address/TidyText.h"

#include <gtest/gtest.h>

#include "support/Tables.h"

namespace {

using ambrel::tidied;
using ambrel::test::ansi;

TEST(TidyText, HasCapitalsAndSingleBlanks) {
    EXPECT_EQ(tidied(ansi("  Nueva \t calle\nde Alcalá ")), ansi("NUEVA CALLE DE ALCALÁ"));
    EXPECT_EQ(tidied("A\xA0"
                     "B"),
              "A B");
    EXPECT_EQ(tidied(" \t"), "");
    EXPECT_EQ(tidied(""), "");
}

} // namespace
