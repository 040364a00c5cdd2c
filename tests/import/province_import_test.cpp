// A province as a whole, with a source of streets that no dialog has.
#include "import/ProvinceImport.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QVBoxLayout>

#include "import/DirectoryClient.h"
#include "import/FoundStreetsView.h"
#include "import/HostPlaceChoice.h"
#include "import/ImportForm.h"
#include "import/ImportMessages.h"
#include "import/MunicipalitySaving.h"
#include "import/StreetGrid.h"
#include "import/StreetSource.h"

namespace {

using namespace postal_tests;
using ambrel::MunicipalityEnd;

/// Notes what it is asked for; knows nothing of PARLA.
class NotedSource : public ambrel::StreetSource {
public:
    [[nodiscard]] const Description& description() const override { return description_; }
    [[nodiscard]] ambrel::PlaceList places() override { return {.isWhole = true}; }
    [[nodiscard]] MunicipalityEnd file(const QString& province, const QString& municipality) override {
        asked.push_back((province + QLatin1Char('/') + municipality).toStdString());
        return municipality == QStringLiteral("PARLA") ? MunicipalityEnd::NoAnswer : MunicipalityEnd::Done;
    }

    Texts asked;

private:
    Description description_{.option = "RBOtra",
                             .caption = QStringLiteral("4.  Otra"),
                             .placeLabel = QStringLiteral("Provincia"),
                             .needs = Needs::WholeProvince,
                             .codes = ambrel::StreetCodes::OfMunicipality,
                             .incomplete = QStringLiteral("Falta la provincia")};
};

class ProvinceOnItsOwn : public ImportForm {
protected:
    ProvinceOnItsOwn() {
        auto* const layout = new QVBoxLayout(&window);
        layout->addWidget(&label);
        place.CargaProvinciasAmbrel();
        provinces.addItem(QStringLiteral("MADRID"));
    }

    [[nodiscard]] std::string report() const { return label.text().toStdString(); }

    QWidget window;
    QLabel label; // of the window, which goes after it
    QComboBox provinces, municipalities, hostProvinces, hostMunicipalities;
    ambrel::StreetGrid grid;
    ambrel::ImportMessages pieceMessages{nullptr};
    ambrel::DirectoryClient directory{pieceMessages};
    ambrel::HostPlaceChoice place{"DB", pieceMessages, hostProvinces, hostMunicipalities};
    ambrel::FoundStreetsView found{grid, label};
    ambrel::MunicipalitySaving saving{*controller, pieceMessages, found, place};
    ambrel::ProvinceImport province{
        {*controller, pieceMessages, directory, place, found, saving, provinces, municipalities}};
};

TEST_F(ProvinceOnItsOwn, AsksASourceForEachMunicipalityAndSaysWhatBecameOfThem) {
    municipalities.addItems({QStringLiteral("ALPEDRETE"), QStringLiteral("PARLA"), QStringLiteral("MADRID")});
    NotedSource source;
    expectBox("No se ha podido importar ningún nombre de vía", "Inténtelo de nuevo", true);
    province.fetch(source);
    EXPECT_EQ(source.asked, (Texts{"MADRID/ALPEDRETE", "MADRID/PARLA", "MADRID/MADRID"}));
    EXPECT_EQ(report(), "MADRID. Municipios archivados: 2 de 3. Sin respuesta válida: 1.");
}

TEST_F(ProvinceOnItsOwn, SavesTheAnswersFiledWithTheCodeOfTheirMunicipality) {
    file("MADRID/ALPEDRETE.xml", answer({{"CL", "ALPISTE"}, {"AV", "MAYOR"}}));
    file("MADRID/PARLA.xml", answer({{"CL", "REAL"}}));
    province.saveChosen(ambrel::StreetCodes::OfMunicipality);
    EXPECT_EQ(stored(), (Texts{"CL ALPISTE 28430", "AV MAYOR 28430"}));
    EXPECT_EQ(report(),
              "MADRID. Municipios guardados: 1 de 2. Calles nuevas: 2. Con varios códigos postales: 1.");
}

TEST_F(ProvinceOnItsOwn, WithoutFiledAnswersSaysHowToGetThem) {
    expectBox("Para importar las calles de los municipios de una provincia\r"
              "es necesario antes pinchar en buscar vías",
              "Faltan los ficheros XML");
    province.saveChosen(ambrel::StreetCodes::OfMunicipality);
    EXPECT_EQ(report(), "");
}

} // namespace
