// Exact addresses of a country full of namesakes.
#include "country/Country.h"

#include "address/AddressResolution.h"

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

} // namespace
} // namespace country_tests
