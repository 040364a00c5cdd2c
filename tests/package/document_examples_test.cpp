// Runs the examples of docs/integration.md; their library shows that they compile.
#include <QApplication>
#include <QLineEdit>
#include <QTimer>
#include <algorithm>
#include <fstream>
#include <functional>
#include <initializer_list>
#include <iterator>
#include <stdexcept>
#include <utility>
#include <vector>

#include "PackageTest.h"
#include "address/JudgedAddress.h"
#include "address/VerdictTexts.h"
#include "directory/OfficialDirectory.h"
#include "directory/audit/TableRepair.h"
#include "snippets/own_table.cpp"
#include "support/DiskWaits.h"

void configureFrom(const std::string& iniFile);
std::string postalCodeOf(const std::string& municipality, const std::string& street,
                         const std::string& number);
bool leaveNumber(TClassCodPostales& postal, const QString& street, const QString& type, QLineEdit* number,
                 dbase::Field& postalCode);
void leaveStreet(TClassCodPostales& postal, QLineEdit* street, const QString& type, dbase::Field* postalCode);
ambrel::directory::LoadedEdition loadStreets(const ambrel::directory::EditionFiles& files,
                                             const std::string& htmlFile,
                                             const std::function<void(double share)>& goesOn);
std::vector<ambrel::directory::Finding> graveFindings(const std::string& htmlFile,
                                                      const ambrel::directory::AuditProgress& goesOn);
std::string mendBlanks(const ambrel::directory::RepairObserver& observer);
void reportOn(const std::vector<ambrel::GivenAddress>& customers, const std::string& htmlFile);
bool startEdit(dbase::Dataset& table);

namespace {

void addRow(const char* table, std::initializer_list<std::pair<const char*, const char*>> values) {
    dbase::Dataset rows("DB", table);
    rows.open();
    rows.append();
    for (const auto& [field, value] : values) {
        rows.field(field).setText(value);
    }
    rows.post();
}

class DocumentExamplesTest : public package_tests::PackageTest {
protected:
    DocumentExamplesTest() {
        createMembers(folder());
        Config.setDatabase("CLIENTES", folder());
        for (const char* postalCode : {"28001", "28009"}) {
            addRow("MUNICIPI", {{"COD_INE", "28079"},
                                {"CODPOSTAL", postalCode},
                                {"CAPITAL", "0"},
                                {"NOMBRE", "MADRID"},
                                {"COD_PROV", "28"},
                                {"ENT_MENOR", "False"}});
        }
        addStretch("1", "45", "28001");
        addStretch("47", "9999", "28009");
    }
    ~DocumentExamplesTest() override {
        Config.setDatabase("CLIENTES", {});
        Config = {};
    }

    static void addStretch(const char* first, const char* last, const char* postalCode) {
        addRow("POSTAL", {{"CODIGO1", postalCode},
                          {"PROVINCIA", "28"},
                          {"CAPITAL", "0"},
                          {"TIPO_VIA", "CL"},
                          {"VIA", "ALCALA"},
                          {"IMPAR_INI", first},
                          {"IMPAR_FIN", last},
                          {"CODPOSTAL", postalCode}});
    }
};

TEST_F(DocumentExamplesTest, TheIniFileIsUnderstood) {
    configureFrom(AMBREL_SNIPPETS "/ambrel.ini");
    EXPECT_EQ(Config.GetAliasAmbrel(), "CLIENTES");
    EXPECT_EQ(Config.DatabasePath("DB"), AMBREL_SNIPPETS "/datos");
    EXPECT_EQ(Config.GetProvin(), 28);
    EXPECT_EQ(Config.GetnMunicipio(), 3);
    EXPECT_TRUE(Config.AsegurarEnDisco);
}

TEST_F(DocumentExamplesTest, ABatchCompletesAnAddress) {
    EXPECT_EQ(postalCodeOf("madrid", "alcala", "101"), "28009");
    EXPECT_EQ(postalCodeOf("madrid", "otra", "101"), "");
}

TEST_F(DocumentExamplesTest, AValidationLeavesAReport) {
    const std::string file = folder() + "/informe.html";
    reportOn({{.street = "ALCALA", .number = "101", .municipality = "MADRID"}, {}}, file);
    std::ifstream page(file);
    const std::string html(std::istreambuf_iterator<char>(page), {});
    EXPECT_NE(html.find(ambrel::verdictTitle(ambrel::Verdict::Completed)), std::string::npos) << html;
    EXPECT_NE(html.find(ambrel::verdictName(ambrel::Verdict::Empty)), std::string::npos);
    EXPECT_NE(html.find("50,0"), std::string::npos);
}

TEST_F(DocumentExamplesTest, AnAuditFindsWhatIsGraveAndLeavesAReport) {
    addStretch("99", "47", "28001");
    const std::string file = folder() + "/informe.html";
    const auto grave = graveFindings(file, {});
    ASSERT_GE(grave.size(), 1U);
    EXPECT_EQ(ambrel::directory::className(grave.front().kind), "RANGO_INVERTIDO");
    std::ifstream page(file);
    const std::string html(std::istreambuf_iterator<char>(page), {});
    EXPECT_NE(html.find(ambrel::directory::classTitle(grave.front().kind)), std::string::npos) << html;
}

TEST_F(DocumentExamplesTest, ARepairLeavesAnUndoFileOnlyIfItChangedSomething) {
    using namespace ambrel::directory;
    std::vector<std::string> changes;
    const auto observe = [&](const RepairedRow& row, RepairOutcome outcome) {
        EXPECT_EQ(outcome, RepairOutcome::Done);
        changes.push_back(row.change);
    };
    EXPECT_EQ(mendBlanks(observe), "");
    addRow("POSTAL", {{"CODIGO1", "28000001"},
                      {"PROVINCIA", "28"},
                      {"CAPITAL", "0"},
                      {"VIA", "GRAN  VIA"},
                      {"CODPOSTAL", "28001"}});
    EXPECT_EQ(mendBlanks(observe), folder() + "/revisar.deshacer");
    EXPECT_EQ(changes, std::vector<std::string>{"VIA=GRAN VIA"});
}

class StreetLoadExampleTest : public package_tests::PackageTest {
protected:
    [[nodiscard]] static ambrel::directory::EditionFiles sampleEdition() {
        const std::string folder = AMBREL_EDITION;
        return {.stretches = folder + "/TRAM.D250630.G250702",
                .streets = folder + "/VIAS.D250630.G250702",
                .municipalities = folder + "/municipios.csv"};
    }
    static bool hasStreets() {
        dbase::Dataset streets("DB", "POSTAL");
        streets.open();
        return !streets.isEmpty();
    }
};

TEST_F(StreetLoadExampleTest, AnEditionIsLoadedWithAReport) {
    const std::string file = folder() + "/informe.html";
    double furthest = 0;
    const auto edition =
        loadStreets(sampleEdition(), file, [&](double share) { furthest = std::max(furthest, share); });
    EXPECT_EQ(edition.date, "2025-06-30");
    EXPECT_GT(edition.summary.streets.comes, 10U);
    EXPECT_GT(furthest, 0);
    EXPECT_TRUE(hasStreets());
    std::ifstream page(file);
    const std::string html(std::istreambuf_iterator<char>(page), {});
    EXPECT_NE(html.find("Fuente: Instituto Nacional de Estadística"), std::string::npos);
    EXPECT_NE(html.find("edición de 2025-06-30"), std::string::npos);
}

TEST_F(StreetLoadExampleTest, WhatTheHostThrowsEndsALoadWithoutATrace) {
    const auto end = [](double) { throw std::runtime_error("basta"); };
    EXPECT_THROW(static_cast<void>(loadStreets(sampleEdition(), folder() + "/informe.html", end)),
                 std::runtime_error);
    EXPECT_FALSE(hasStreets());
}

TEST_F(StreetLoadExampleTest, ASimulationChangesNothing) {
    const auto edition = ambrel::directory::simulateEdition({.files = sampleEdition()});
    EXPECT_GT(edition.summary.streets.comes, 10U);
    EXPECT_FALSE(hasStreets());
}

TEST_F(StreetLoadExampleTest, FilesThatCannotBeReadAreRefusedWithATextForUsers) {
    ambrel::directory::EditionFiles files = sampleEdition();
    files.stretches = folder() + "/no-hay";
    try {
        static_cast<void>(ambrel::directory::simulateEdition({.files = files}));
        FAIL() << "read a file that is not there";
    } catch (const std::runtime_error& error) {
        EXPECT_NE(std::string(error.what()).find("no-hay"), std::string::npos) << error.what();
    }
}

TEST_F(DocumentExamplesTest, LeavingTheNumberWritesThePostalCodeIntoTheHostsRow) {
    Members members;
    members.data.open();
    storeAll(members, {"ANA"});
    TClassCodPostales postal;
    ASSERT_TRUE(postal.BuscaPorNombreMunicipi("MADRID", true));
    QLineEdit number("101");
    EXPECT_TRUE(leaveNumber(postal, "ALCALA", "CL", &number, members.postalCode));
    EXPECT_EQ(members.postalCode.text(), "28009");
    number.setText("100"); // no stretch has even numbers
    EXPECT_FALSE(leaveNumber(postal, "ALCALA", "CL", &number, members.postalCode));
    EXPECT_EQ(members.postalCode.text(), "28009");
}

TEST_F(DocumentExamplesTest, LeavingTheNumberLeavesTheCodeAloneWhereTheMunicipalityLacksTheStreet) {
    addRow("MUNICIPI", {{"COD_INE", "08019"},
                        {"CODPOSTAL", "08001"},
                        {"CAPITAL", "0"},
                        {"NOMBRE", "BARCELONA"},
                        {"COD_PROV", "08"},
                        {"ENT_MENOR", "False"}});
    addRow("POSTAL", {{"CODIGO1", "08042"},
                      {"PROVINCIA", "08"},
                      {"CAPITAL", "0"},
                      {"TIPO_VIA", "CL"},
                      {"VIA", "ALCALDE"},
                      {"PAR_INI", "2"},
                      {"PAR_FIN", "9998"},
                      {"CODPOSTAL", "08042"}});
    Members members;
    members.data.open();
    storeAll(members, {"ANA"});
    TClassCodPostales postal;
    ASSERT_TRUE(postal.BuscaPorNombreMunicipi("BARCELONA", true));
    QLineEdit number("100");
    EXPECT_TRUE(leaveNumber(postal, "ALCALDE", "AV", &number, members.postalCode)); // of another type
    members.data.cancel();
    EXPECT_FALSE(leaveNumber(postal, "ALCALA", "CL", &number, members.postalCode));
    EXPECT_EQ(members.postalCode.text(), "");
    members.data.close();
}

TEST_F(DocumentExamplesTest, LeavingAStreetThatWasPastedFindsItWithoutAQuestion) {
    TClassCodPostales postal;
    ASSERT_TRUE(postal.BuscaPorNombreMunicipi("MADRID", true));
    QLineEdit street("ALCALA");
    leaveStreet(postal, &street, "CL", nullptr);
    EXPECT_EQ(ambrel::tagOf(street), 28001);
    EXPECT_TRUE(shown.isEmpty());
}

TEST_F(DocumentExamplesTest, LeavingANewStreetWhoseCardIsClosedLeavesItUnvalidated) {
    ambrel::setMessageShower([](const ambrel::MessageBox&) { return ambrel::MessageAnswer::Yes; });
    TClassCodPostales postal;
    ASSERT_TRUE(postal.BuscaPorNombreMunicipi("MADRID", true));
    bool isCardSeen = false;
    QTimer closer;
    QObject::connect(&closer, &QTimer::timeout, &closer, [&] {
        if (QWidget* card = QApplication::activeModalWidget()) {
            isCardSeen = true;
            card->close();
        }
    });
    closer.start(0);
    QLineEdit street("NUEVA");
    leaveStreet(postal, &street, "CL", nullptr);
    EXPECT_TRUE(isCardSeen);
    EXPECT_EQ(ambrel::tagOf(street), 0);
    EXPECT_EQ(street.text(), "NUEVA");
    EXPECT_EQ(postal.DM->tbMunicipiNOMBRE.text(), "MADRID");
}

TEST_F(DocumentExamplesTest, ManyRowsAreStoredTogetherWithOneWaitForTheDisk) {
    Members members;
    members.data.open();
    storeAll(members, {"LUZ"}); // the first change of a table waits more often
    const int before = ambrel::test::diskWaits();
    storeAll(members, {"EVA", "ANA"});
    EXPECT_EQ(ambrel::test::diskWaits() - before, 1);
    EXPECT_EQ(namesAt(members, ""), (std::vector<std::string>{"ANA", "EVA", "LUZ"}));
}

TEST_F(DocumentExamplesTest, ARowThatSomebodyElseHoldsIsReportedAndNotEdited) {
    Members here, there;
    here.data.open();
    storeAll(here, {"ANA"});
    there.data.open();
    ASSERT_TRUE(startEdit(there.data));
    EXPECT_FALSE(startEdit(here.data));
    EXPECT_EQ(shown.size(), 1);
    there.name.setText("EVA");
    there.data.post();
    EXPECT_FALSE(startEdit(here.data)); // the row has changed, and is shown
    EXPECT_EQ(here.name.text(), "EVA");
    EXPECT_TRUE(startEdit(here.data));
}

} // namespace
