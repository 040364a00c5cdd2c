// Fixture: a country's edition written by the generator, and loaded by the real `ambcp callejero cargar`.
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "country/OfficeLines.h"
#include "country/Questions.h"

namespace country_tests {

/// A small invented country in which every municipality has streets of the same names; in the long form one
/// of 2,000,000 stretches, with real municipalities where AMBREL_REAL_DATA has them. AMBREL_COUNTRY: a folder
/// for the tables, which are kept, and used again.
class Country : public ::testing::Test {
public:
    static void SetUpTestSuite();
    static void TearDownTestSuite();

protected:
    /// What a run of the program printed; fails the test if it does not end well.
    static std::string ambcp(const std::string& arguments);
    [[nodiscard]] static std::string tables();
    [[nodiscard]] static const OfficeLines& office();
    [[nodiscard]] static const Questions& questions();
    /// A sample whose size suits the country.
    [[nodiscard]] static std::vector<Question> sample(std::size_t share = 1);
    /// Whether no other municipality of the province has the name, so that name and province say which it is.
    [[nodiscard]] static bool isNameUnique(const Question& question);
    /// A municipality's name as MUNICIPI has it.
    [[nodiscard]] static const std::string& municipality(const std::string& ineCode);

    /// Prints the score; at least 99 % of the exact addresses must be right, and nothing wrong.
    static void expectRight(const Score& score);
};

} // namespace country_tests
