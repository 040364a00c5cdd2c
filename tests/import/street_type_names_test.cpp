// The codes of street types by their names.
#include "import/StreetTypeNames.h"

#include <gtest/gtest.h>

#include "data/TableDefinitions.h"
#include "dbase/system/error.h"
#include "support/TableTest.h"

namespace {

using ambrel::test::ansi;

class StreetTypeNames : public ambrel::test::TableTest {
protected:
    void addTypes(const std::vector<ambrel::test::Row>& rows) const {
        createTable(ambrel::streetTypeTable(), {"CODIGO", "NOMBRE"}, rows);
    }

    static std::string code(const std::string& name) {
        return ambrel::StreetTypeNames("DB").ExtraeTipoVia(ansi(name));
    }
};

class KnownStreetTypeNames : public StreetTypeNames {
protected:
    KnownStreetTypeNames() {
        addTypes({{"CL", "CALLE"}, {"CJ", "CJA,CALLEJON"}, {"PZ", "PLAZA"}, {"", "RAMBLA"}});
    }
};

TEST_F(KnownStreetTypeNames, AreFoundWhole) {
    EXPECT_EQ(code("CALLE"), "CL");
    EXPECT_EQ(code("PLAZA"), "PZ");
}

TEST_F(KnownStreetTypeNames, AreFoundAsPartOfOne) { EXPECT_EQ(code("CALLEJON"), "CJ"); }

TEST_F(KnownStreetTypeNames, EndBeforeABracket) { EXPECT_EQ(code("CALLE (IMPARES DEL 1 AL 3)"), "CL"); }

TEST_F(KnownStreetTypeNames, FallBackOnTheFixedList) {
    EXPECT_EQ(code("PLAZUELA"), "PZ");
    EXPECT_EQ(code("CALLEJUELA"), "CJ");
    EXPECT_EQ(code("CAMINO VIEJO"), "CM");
    EXPECT_EQ(code("RESIDENCIAL"), "UR");
}

TEST_F(KnownStreetTypeNames, ThatNobodyKnowsHaveNoCode) {
    EXPECT_EQ(code("ZAGUAN"), "");
    EXPECT_EQ(code(""), "");
    EXPECT_EQ(code("RAMBLA"), "");
    EXPECT_EQ(code("UN NOMBRE MUCHO MAS LARGO QUE LA COLUMNA"), "");
}

TEST_F(KnownStreetTypeNames, AreLookedUpInATableOpenedOnce) {
    ambrel::StreetTypeNames types("DB");
    EXPECT_EQ(types.ExtraeTipoVia("CALLE"), "CL");
    EXPECT_EQ(types.ExtraeTipoVia("ZAGUAN"), "");
    EXPECT_EQ(types.ExtraeTipoVia("PLAZUELA"), "PZ");
    EXPECT_EQ(types.ExtraeTipoVia(std::string(1'000'000, 'X')), "");
    EXPECT_EQ(types.ExtraeTipoVia("CALLEJON"), "CJ");
}

TEST_F(StreetTypeNames, AskForNoTableBeforeTheFirstName) {
    ambrel::StreetTypeNames types("DB"); // its folder is empty
    EXPECT_THROW(static_cast<void>(types.ExtraeTipoVia("CALLE")), dbase::Error);
    addTypes({{"CL", "CALLE"}});
    EXPECT_EQ(types.ExtraeTipoVia("CALLE"), "CL");
}

TEST_F(StreetTypeNames, PlazuelaIsInTheListOnlyWhenNoTypeContainsIt) {
    addTypes({{"PU", "PLAZA,PLAZUELA"}});
    EXPECT_EQ(code("PLAZUELA"), "PU");
}

} // namespace
