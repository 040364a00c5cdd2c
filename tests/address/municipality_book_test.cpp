// Municipalities that are looked up once.
#include "address/MunicipalityBook.h"

#include <array>
#include <random>

#include "data/PostalTables.h"
#include "support/Seed.h"

namespace {

using namespace ambrel;

class MunicipalityBookTest : public postal_tests::PostalTables {
protected:
    void SetUp() override {
        addMunicipalities({{"17105", "17830", "MIERES", "S"},
                           {"26001", "26500", "ALTA"},
                           {"26001", "26501", "ALTA"},
                           {"26002", "26500", "BAJA"},
                           {"33037", "33600", "MIERES"}});
    }
    static std::string codesOf(const std::vector<MunicipalityPointer>& some) {
        std::string codes;
        for (const MunicipalityPointer one : some) {
            codes += one->ineCode + ' ';
        }
        return codes;
    }
};

TEST_F(MunicipalityBookTest, AnswersAsTheTableDoesHoweverManyNamesWereAskedForBefore) {
    AddressDirectory directory;
    MunicipalityBook book("DB", directory);
    std::mt19937 random(ambrel::test::seedOfThisRun());
    for (int i = 0; i < 60'000; ++i) {
        static_cast<void>(book.named("NO EXISTE " + std::to_string(random() % 50'000)));
        if (random() % 8 == 0) {
            book.expect(std::array<std::string_view, 5>{"MIERES", "", "ALTA", "NO EXISTE", "MIERES"});
        }
        switch (random() % 4) {
        case 0:
            ASSERT_EQ(codesOf(book.named("MIERES")), "17105 33037 ");
            break;
        case 1:
            ASSERT_EQ(codesOf(book.named("ALTA")), "26001 ");
            break;
        case 2:
            ASSERT_EQ(codesOf(book.withPostalCode("26500")), "26001 26002 ");
            break;
        default:
            ASSERT_EQ(codesOf(book.named("NO EXISTE")), "");
        }
    }
}

TEST_F(MunicipalityBookTest, ForgetsWhatItKnewOnceTheTableHasChanged) {
    AddressDirectory directory;
    MunicipalityBook book("DB", directory);
    EXPECT_EQ(codesOf(book.named("ALTA")), "26001 ");
    addMunicipalities({{"26009", "26509", "ALTA"}});
    book.renew();
    EXPECT_EQ(codesOf(book.named("ALTA")), "26001 26009 ");
    EXPECT_EQ(book.find("26001")->postalCodes.size(), 2U);
}

} // namespace
