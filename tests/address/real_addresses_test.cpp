// The addresses of one real province in the tables of all its municipalities.
#include "address/RealProvince.h"

namespace {

using namespace postal_tests;

class RealAddresses : public RealProvince {};

void expectRight(const Tally& tally) {
    EXPECT_GE(tally.exact, 19000);
    EXPECT_GE(tally.foundShare(), 0.99) << tally.found << " of " << tally.exact;
    for (const std::string& wrong : tally.wrong) {
        ADD_FAILURE() << wrong;
    }
}

TEST_F(RealAddresses, AreFoundInTheTablesOfAWholeProvince) {
    load(false);
    expectRight(tryAddresses(addresses()));
}

TEST_F(RealAddresses, AreFoundWhereEveryRowNamesItsMunicipality) {
    load(true);
    expectRight(tryAddresses(addresses()));
}

} // namespace
