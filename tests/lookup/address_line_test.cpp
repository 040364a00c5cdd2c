// The line of an address: composed from texts, and from a host's table.
#include "dbase/dataset/dataset.h"
#include "dbase/system/error.h"
#include "lookup/AddressLine.h"
#include "lookup/LookupTables.h"
#include "lookup/RutCodPostales.h"

namespace {

using namespace lookup_tests;
using ambrel::AddressColumns;
using ambrel::addressLine;
using ambrel::test::ansi;

AddressColumns columns(std::string type, std::string street, std::string number, std::string floor) {
    return {.type = std::move(type),
            .street = std::move(street),
            .number = std::move(number),
            .floor = std::move(floor),
            .postalCode = std::nullopt,
            .locality = std::nullopt};
}

TEST(AddressLine, TrimmedLayoutHasNoneOfTheBlanksOfTheColumns) {
    EXPECT_EQ(addressLine(columns(" CALLE ", "  MAYOR ", " 7 ", " 2 B "), 0), "CALLE MAYOR, 7, 2 B");
}

TEST(AddressLine, UntrimmedLayoutWritesTheWordBeforeTheNumberAndKeepsBlanks) {
    EXPECT_EQ(addressLine(columns(" CALLE ", "  MAYOR", " 7", " 2 B"), -1),
              ansi("CALLE    MAYOR NÚMERO  7,  2 B"));
}

TEST(AddressLine, EmptyNumberAndFloorAddNothing) {
    for (const int width : {0, -1}) {
        EXPECT_EQ(addressLine(columns("CALLE", "MAYOR", "", "  "), width), "CALLE MAYOR");
        EXPECT_EQ(addressLine(columns("CALLE", "MAYOR", " ", "1"), width), "CALLE MAYOR, 1");
    }
}

TEST(AddressLine, EmptyTypeLeavesNoBlank) {
    for (const int width : {0, -1}) {
        EXPECT_EQ(addressLine(columns("", "MAYOR", "", ""), width), "MAYOR");
    }
}

TEST(AddressLine, PostalCodePrecedesTheLocality) {
    AddressColumns whole = columns("CALLE", "MAYOR", "7", "");
    whole.postalCode = "28013";
    EXPECT_EQ(addressLine(whole, 0), "CALLE MAYOR, 7 28013");
    whole.locality = "MADRID";
    EXPECT_EQ(addressLine(whole, 0), "CALLE MAYOR, 7 28013 MADRID");
    whole.postalCode = "";
    EXPECT_EQ(addressLine(whole, 0), "CALLE MAYOR, 7  MADRID") << "as read, each after one blank";
    whole.locality = "";
    EXPECT_EQ(addressLine(whole, -1), ansi("CALLE MAYOR NÚMERO 7"));
}

TEST(AddressLine, WidthPadsOrCutsToExactlyThatManyCharacters) {
    const AddressColumns mayor = columns("CALLE", "MAYOR", "7", "");
    EXPECT_EQ(addressLine(mayor, 20), "CALLE MAYOR, 7      ");
    EXPECT_EQ(addressLine(mayor, 14), "CALLE MAYOR, 7");
    EXPECT_EQ(addressLine(mayor, 6), "CALLE ");
    EXPECT_EQ(addressLine(mayor, 1), "C");
    EXPECT_EQ(addressLine(columns("", "", "", ""), 3), "   ");
}

/// A host's own table, on its only record.
class HostAddress : public LookupTables {
protected:
    void SetUp() override {
        addStreetTypes({{"CL", "CALLE", "CARRER"}, {"AV", "AVENIDA, GRAN", "AVINGUDA"}});
        createTable(ambrel::test::defineTable("CLIENTES", {"TIPO_VIA C10", "DOMICILIO C30", "NUMERO C5",
                                                           "PISO C8", "CODPOSTAL C5", "VECINDAD C20"}),
                    {{"CL", " PEÑA", "12", "3º D", "28013", "LA CORUÑA"}});
        host.open();
    }
    void setType(const char* text) {
        host.edit();
        host.field("TIPO_VIA").setText(text);
        host.post();
    }

    dbase::Dataset host{"DB", "CLIENTES"};
};

constexpr bool asName = true, asAbbreviation = false;

TEST_F(HostAddress, WrittenOutTypeIsTakenAsItIs) {
    EXPECT_EQ(Domicilio(host, 0, 0, 0, asName), QStringLiteral("CL PEÑA, 12, 3º D"));
    EXPECT_EQ(Domicilio(host, -1, 0, 0, asName), QStringLiteral("CL  PEÑA NÚMERO 12, 3º D"));
}

TEST_F(HostAddress, AbbreviationBecomesTheShortName) {
    EXPECT_EQ(Domicilio(host, 0, 0, 0, asAbbreviation), QStringLiteral("CALLE PEÑA, 12, 3º D"));
    setType("AV");
    EXPECT_EQ(Domicilio(host, 0, 0, 0, asAbbreviation), QStringLiteral("AVENIDA PEÑA, 12, 3º D"));
}

TEST_F(HostAddress, UnknownAbbreviationLeavesTheStreetFirstAndAsksNothing) {
    setType("ZZ");
    EXPECT_EQ(Domicilio(host, 0, 0, 0, asAbbreviation), QStringLiteral("PEÑA, 12, 3º D"));
    EXPECT_EQ(Domicilio(host, -1, 0, 0, asAbbreviation), QStringLiteral("PEÑA NÚMERO 12, 3º D"));
    setType("");
    EXPECT_EQ(Domicilio(host, 0, 0, 0, asAbbreviation), QStringLiteral("PEÑA, 12, 3º D"));
    EXPECT_TRUE(messages.shown().empty());
}

TEST_F(HostAddress, OnlyExactlyOneAppendsAColumn) {
    const QString line = QStringLiteral("CL PEÑA, 12, 3º D");
    EXPECT_EQ(Domicilio(host, 0, 1, 0, asName), line + QStringLiteral(" LA CORUÑA"));
    EXPECT_EQ(Domicilio(host, 0, 0, 1, asName), line + " 28013");
    EXPECT_EQ(Domicilio(host, 0, 1, 1, asName), line + QStringLiteral(" 28013 LA CORUÑA"));
    for (const int other : {2, -1, 256}) {
        EXPECT_EQ(Domicilio(host, 0, other, other, asName), line) << other;
    }
}

TEST_F(HostAddress, WidthGivesExactlyThatManyCharacters) {
    for (const int width : {1, 8, 17, 60}) {
        const QString line = Domicilio(host, width, 0, 0, asName);
        EXPECT_EQ(line.size(), width);
        EXPECT_TRUE(QStringLiteral("CL PEÑA, 12, 3º D").leftJustified(60).startsWith(line)) << width;
    }
}

TEST_F(HostAddress, NumericHouseNumberIsReadAsText) {
    createTable(
        ambrel::test::defineTable("SOCIOS", {"TIPO_VIA C10", "DOMICILIO C30", "NUMERO N6", "PISO C8",
                                             "CODPOSTAL C5", "VECINDAD C20"}),
        {{"CALLE", "MAYOR", "7", "", "28013", "MADRID"}, {"CALLE", "MAYOR", "", "", "28013", "MADRID"}});
    dbase::Dataset members("DB", "SOCIOS");
    members.open();
    EXPECT_EQ(Domicilio(members, 0, 0, 0, asName), "CALLE MAYOR, 7");
    members.next();
    EXPECT_EQ(Domicilio(members, 0, 0, 0, asName), "CALLE MAYOR");
}

TEST_F(HostAddress, MissingStreetTypesAreReportedAndTheLineGoesOnWithoutType) {
    removeTable("TIPO_VIA");
    messages.expect(QStringLiteral("No se puede buscar en la lista de vías"), QStringLiteral("Error"));
    EXPECT_EQ(Domicilio(host, 0, 0, 0, asAbbreviation), QStringLiteral("PEÑA, 12, 3º D"));
}

TEST_F(HostAddress, TableWithoutTheColumnsRaises) {
    dbase::Dataset other("DB", "PROVIN");
    other.open();
    EXPECT_THROW(static_cast<void>(Domicilio(other, 0, 0, 0, asName)), dbase::Error);
}

TEST_F(HostAddress, HostsTableIsOnlyRead) {
    const auto before = host.recordNumber();
    static_cast<void>(Domicilio(host, 40, 1, 1, asAbbreviation));
    EXPECT_EQ(host.recordNumber(), before);
    EXPECT_EQ(host.state(), dbase::DatasetState::Browse);
}

} // namespace
