// Exact addresses of a country full of namesakes.
#include "country/Country.h"

#include <utility>

#include "address/AddressResolution.h"
#include "services/Confamb.h"

namespace country_tests {
namespace {

using ExactAddresses = Country;

TEST_F(ExactAddresses, AreResolvedToTheirOwnMunicipalitys) {
    Score score;
    for (const Question& question : sample()) {
        const ambrel::ResolvedAddress answer =
            ambrel::resolveAddress("DB", {.municipality = municipality(question.place),
                                          .streetType = question.type,
                                          .street = question.street,
                                          .number = question.number,
                                          .ineCode = question.place});
        score.add(question,
                  {answer.isSettled(), answer.ineCode, answer.streetType, answer.street, answer.postalCode});
    }
    expectRight(score);
}

TEST_F(ExactAddresses, AreResolvedUnderTheNamesOfEntitiesWhereTheseAreShown) {
    const bool before = std::exchange(Config.EntidadesMenores, true);
    Score score;
    for (const Question& question : sample(4)) {
        if (!question.entity.empty()) {
            const ambrel::ResolvedAddress answer =
                ambrel::resolveAddress("DB", {.municipality = question.entity,
                                              .streetType = question.type,
                                              .street = question.street,
                                              .number = question.number,
                                              .ineCode = question.place});
            score.add(question, {answer.isSettled(), answer.ineCode, answer.streetType, answer.street,
                                 answer.postalCode});
        }
    }
    Config.EntidadesMenores = before;
    EXPECT_GT(score.exactCount(), 100U);
    expectRight(score);
}

} // namespace
} // namespace country_tests
