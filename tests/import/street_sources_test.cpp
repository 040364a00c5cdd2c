// The sources of streets, asked without a dialog.
#include "import/StreetSources.h"

#include <gtest/gtest.h>

#include <set>

#include "import/DirectoryClient.h"
#include "import/ImportForm.h"
#include "import/ImportMessages.h"
#include "import/ResponseFolder.h"

namespace {

using namespace postal_tests;
using ambrel::FoundStreets;
using ambrel::HostPlaceName;
using ambrel::MunicipalityEnd;
using ambrel::StreetSource;
using callejero::Fault;
using callejero::Operation;

class StreetSources : public ImportForm {
protected:
    StreetSources() { addStreetTypes({{"CL", "CALLE"}, {"AV", "AVENIDA"}}); }

    [[nodiscard]] StreetSource& source(const std::string& option) const {
        for (const auto& one : sources_) {
            if (one->description().option == option) {
                return *one;
            }
        }
        throw std::out_of_range(option);
    }
    [[nodiscard]] static Texts textsOf(const QStringList& names) {
        Texts texts;
        for (const QString& name : names) {
            texts.push_back(name.toStdString());
        }
        return texts;
    }
    /// As "TYPE NAME CODE".
    [[nodiscard]] static Texts namesOf(const FoundStreets& found) {
        Texts names;
        for (const ambrel::ImportedStreet& street : found.streets) {
            names.push_back(street.type + " " + street.name + " " + street.postalCode);
        }
        return names;
    }

    ambrel::ImportMessages pieceMessages{nullptr};
    ambrel::DirectoryClient directory{pieceMessages};
    std::vector<std::unique_ptr<StreetSource>> sources_ =
        ambrel::streetSources({"DB", pieceMessages, directory});
};

TEST_F(StreetSources, HaveAnOptionEachNumberedInTheirOrder) {
    std::set<std::string> options;
    int number = 0;
    for (const auto& one : sources_) {
        const StreetSource::Description& description = one->description();
        EXPECT_TRUE(options.insert(description.option).second) << description.option;
        EXPECT_TRUE(description.caption.startsWith(QString::number(++number) + QStringLiteral(".  ")));
        EXPECT_FALSE(description.placeLabel.isEmpty());
        EXPECT_FALSE(description.incomplete.isEmpty());
    }
    EXPECT_EQ(options, (std::set<std::string>{"RBMasDeUno", "RBUno", "RBTodosConUno"}));
}

TEST_F(StreetSources, StreetsOfAFileBringTheirPostalCodes) {
    file("28-PARLA.dat", "28980:Mayor, calle\n28981:Sol, avenida (PARES DEL 2 AL FINAL)\n");
    StreetSource& files = source("RBMasDeUno");
    EXPECT_EQ(files.description().codes, ambrel::StreetCodes::Own);
    EXPECT_EQ(textsOf(files.places().names), Texts{"28-PARLA"});
    const FoundStreets found = files.find(QStringLiteral("28-PARLA"), {});
    EXPECT_TRUE(found.isWhole);
    EXPECT_EQ(namesOf(found), (Texts{"CL Mayor 28980", "AV Sol 28981"}));
    EXPECT_EQ(found.streets.at(1).evenLast, 9998);
}

TEST_F(StreetSources, AFileSaysWhereItsStreetsGo) {
    const HostPlaceName place = source("RBMasDeUno").hostPlace(QStringLiteral("07-MUNICIPIO_A"), {});
    EXPECT_EQ(place.provinceCode, 7);
    EXPECT_EQ(place.municipality, QStringLiteral("MUNICIPIO/A"));
}

TEST_F(StreetSources, AMissingFileIsReportedAndCountsAsRead) {
    file("28-PARLA.dat", "");
    expectBox("Se ha producido un error al leer el fichero de códigos postales del municipio",
              "No se puede realizar la importación");
    const FoundStreets found = source("RBMasDeUno").find(QStringLiteral("28-LEGANES"), {});
    EXPECT_TRUE(found.isWhole);
    EXPECT_FALSE(found.countsRows);
    EXPECT_TRUE(found.streets.empty());
}

TEST_F(StreetSources, TheServiceListsPlacesAndStreetsWithoutCodes) {
    StreetSource& web = source("RBUno");
    EXPECT_EQ(web.description().codes, ambrel::StreetCodes::OfMunicipality);
    EXPECT_EQ(textsOf(web.places().names), (Texts{"LA RIOJA", "MADRID"}));
    EXPECT_EQ(textsOf(web.municipalities(QStringLiteral("LA RIOJA")).names), Texts{"HARO"});
    const FoundStreets found = web.find(QStringLiteral("LA RIOJA"), QStringLiteral("HARO"));
    EXPECT_TRUE(found.isWhole);
    EXPECT_EQ(found.count, 1);
    EXPECT_EQ(namesOf(found), Texts{"CL VEGA LA "});
    const HostPlaceName place = web.hostPlace(QStringLiteral("LA RIOJA"), QStringLiteral("HARO"));
    EXPECT_EQ(place.province, QStringLiteral("LA RIOJA"));
    EXPECT_FALSE(place.provinceCode.has_value());
}

TEST_F(StreetSources, AServiceThatDoesNotAnswerIsReportedOnce) {
    service->setFault(Operation::Provinces, Fault::Status500);
    expectBox("Se ha producido un error al localizar las provincias.\rReinténtelo más tarde",
              "Error al importar datos");
    EXPECT_FALSE(source("RBUno").places().isWhole);
}

TEST_F(StreetSources, AProvinceIsFiledMunicipalityByMunicipality) {
    StreetSource& province = source("RBTodosConUno");
    const QString madrid = QStringLiteral("MADRID");
    EXPECT_EQ(province.file(madrid, QStringLiteral("ALPEDRETE")), MunicipalityEnd::Done);
    EXPECT_EQ(province.file(QStringLiteral(".."), QStringLiteral("ALPEDRETE")), MunicipalityEnd::NotFiled);
    const FoundStreets found = directory.readFiled(ambrel::provinceFolder("DB", "MADRID") + "/ALPEDRETE.xml");
    EXPECT_EQ(namesOf(found), (Texts{"CL ALPISTE ", "AV MAYOR ", "PZ SOL "}));
}

TEST_F(StreetSources, AFileThatIsNoAnswerIsPassedOverWithoutAWord) {
    file("MADRID/PARLA.xml", "<html>");
    EXPECT_FALSE(directory.readFiled(postales("MADRID/PARLA.xml")).isWhole);
}

} // namespace
