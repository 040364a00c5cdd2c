// A file of invented customers against the truth about them.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "address/AddressFile.h"
#include "dbase/dbf/codepage.h"
#include "sample/Sample.h"
#include "support/Seed.h"
#include "support/TableTest.h"
#include "tools/customers/InventedCustomers.h"

namespace {

using namespace ambrel;
using customers::Customer;

class InventedCustomers : public ambrel::test::TableTest {
protected:
    static std::string utf8(const std::string& text) { return dbase::CodePage::windows1252().toUtf8(text); }

    InventedCustomers() {
        ambrel::createSample(folder.path());
        customers::InventedCustomers invented;
        std::string file = customers::headingLine();
        for (int i = 0; i < 1500; ++i) {
            truths.push_back(invented.next());
            file += customers::rowOf(truths.back());
        }
        // As a spreadsheet of Windows saves it.
        const std::string bytes = dbase::CodePage::windows1252().fromUtf8(file).value();
        validateAddressFile({loading::textSource(bytes), "clientes.csv", bytes.size()}, {},
                            {.row = [&](const ValidatedRow& row) {
                                given.push_back(row.given);
                                judged.push_back(row.judged);
                            }});
    }

    static bool isRight(const JudgedAddress& one, const Customer& truth) {
        return one.ineCode == truth.ineCode && utf8(one.street) == truth.street &&
               one.postalCode == truth.postalCode;
    }
    static std::string shown(const JudgedAddress& one, const Customer& truth) {
        return customers::rowOf(truth) + std::string(verdictName(one.verdict)) + ' ' + utf8(one.street) +
               ' ' + one.postalCode + ", wanted: " + truth.verdicts + ' ' + truth.street + ' ' +
               truth.postalCode;
    }

    /// Everything that a verdict says.
    static std::string wholeText(const JudgedAddress& one) {
        std::string text = std::string(verdictName(one.verdict)) + ' ' + std::to_string(one.confidence);
        for (const std::string* part :
             {&one.ineCode, &one.municipality, &one.province, &one.type, &one.street, &one.number, &one.rest,
              &one.postalCode, &one.key, &one.reason}) {
            text += '|' + *part;
        }
        for (const AddressChange& change : one.changes) {
            text += '|' + std::string(partName(change.part)) + '|' + change.from + '|' + change.to;
        }
        for (const AddressAlternative& other : one.alternatives) {
            text += '|' + other.ineCode + '|' + other.type + '|' + other.street + '|' +
                    std::to_string(other.points);
        }
        return text;
    }

    std::vector<Customer> truths;
    std::vector<GivenAddress> given;
    std::vector<JudgedAddress> judged;
};

TEST_F(InventedCustomers, WhatIsSettledAloneIsWhatWasMeant) {
    ASSERT_EQ(judged.size(), truths.size());
    std::size_t settled = 0;
    for (std::size_t i = 0; i < judged.size(); ++i) {
        if (isSettled(judged[i].verdict)) {
            ++settled;
            EXPECT_TRUE(isRight(judged[i], truths[i])) << shown(judged[i], truths[i]);
        }
    }
    // Of the kinds of faults a third must not be settled.
    EXPECT_GT(settled, judged.size() * 2 / 3);
}

TEST_F(InventedCustomers, EachFaultGetsTheVerdictThatNamesIt) {
    ASSERT_EQ(judged.size(), truths.size());
    std::vector<std::string> others;
    for (std::size_t i = 0; i < judged.size(); ++i) {
        const std::string verdicts = ' ' + truths[i].verdicts + ' ';
        if (verdicts.find(' ' + std::string(verdictName(judged[i].verdict)) + ' ') == std::string::npos) {
            others.push_back(shown(judged[i], truths[i]));
        }
    }
    EXPECT_LE(others.size(), judged.size() / 100) << others.front();
}

TEST_F(InventedCustomers, SeveralTogetherAreJudgedAsEachAlone) {
    std::mt19937 random(ambrel::test::seedOfThisRun());
    AddressValidator alone, together;
    std::vector<JudgedAddress> several(given.size());
    std::vector<AddressToJudge> next;
    for (std::size_t i = 0; i < given.size(); ++i) {
        next.push_back({&given[i], &several[i]});
        if (random() % 20 == 0 || i + 1 == given.size()) {
            std::ranges::shuffle(next, random);
            together.validate(next);
            next.clear();
        }
    }
    for (std::size_t i = 0; i < given.size(); ++i) {
        const std::string expected = wholeText(alone.validate(given[i]));
        ASSERT_EQ(wholeText(several[i]), expected) << customers::rowOf(truths[i]);
        if (judged[i].verdict != Verdict::BrokenRow) { // of which the file has no address
            ASSERT_EQ(wholeText(judged[i]), expected) << customers::rowOf(truths[i]);
        }
    }
}

TEST_F(InventedCustomers, AVerdictDoesNotDependOnWhatWasAskedBefore) {
    customers::InventedCustomers invented;
    std::vector<std::string> rows;
    for (int i = 0; i < 5000; ++i) {
        rows.push_back(customers::rowOf(invented.next()));
    }
    const auto judgedInOrder = [&] {
        std::string file = customers::headingLine();
        for (const std::string& row : rows) {
            file += row;
        }
        const std::string bytes = dbase::CodePage::windows1252().fromUtf8(file).value();
        std::vector<std::string> texts;
        AddressFileOptions options;
        options.threads = 1;
        validateAddressFile(
            {loading::textSource(bytes), "clientes.csv", bytes.size()}, options,
            {.row = [&](const ValidatedRow& row) { texts.push_back(wholeText(row.judged)); }});
        return texts;
    };
    const std::vector<std::string> forwards = judgedInOrder();
    std::ranges::reverse(rows);
    std::vector<std::string> backwards = judgedInOrder();
    std::ranges::reverse(backwards);
    ASSERT_EQ(forwards.size(), backwards.size());
    for (std::size_t i = 0; i < forwards.size(); ++i) {
        ASSERT_EQ(forwards[i], backwards[i]);
    }
}

} // namespace
