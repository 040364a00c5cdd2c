// Choosing the host's province and municipality, in two lists of their own.
#include "import/HostPlaceChoice.h"

#include <gtest/gtest.h>

#include "import/ImportForm.h"
#include "import/ImportMessages.h"

namespace {

using namespace postal_tests;

class HostPlaces : public ImportForm {
protected:
    HostPlaces() { place.CargaProvinciasAmbrel(); }

    [[nodiscard]] std::string chosenPlace() const {
        return provinces.currentText().toStdString() + "/" + municipalities.currentText().toStdString();
    }

    ambrel::ImportMessages pieceMessages{nullptr};
    QComboBox provinces, municipalities;
    int left = 0; // how often the province was
    ambrel::HostPlaceChoice place{"DB", pieceMessages, provinces, municipalities, [this] { ++left; }};
};

TEST_F(HostPlaces, AreChosenByTheirNames) {
    place.choose({.province = QStringLiteral("madrid"), .municipality = QStringLiteral("Alpedrete")});
    EXPECT_EQ(chosenPlace(), "MADRID/ALPEDRETE");
    EXPECT_TRUE(place.isChosen());
    EXPECT_EQ(left, 1);
    const ambrel::HostMunicipality municipality = place.municipality();
    EXPECT_EQ(municipality.provinceCode, "28");
    EXPECT_EQ(municipality.postalCode, "28430");
    EXPECT_EQ(municipality.name, "ALPEDRETE");
}

TEST_F(HostPlaces, OfTwoProvincesWithOneCodeTheLaterOneIsChosen) {
    provinces.addItem(QStringLiteral("MADRID LA NUEVA"), 28);
    place.choose({.provinceCode = 28, .municipality = QStringLiteral("PARLA")});
    EXPECT_EQ(chosenPlace(), "MADRID LA NUEVA/PARLA");
}

TEST_F(HostPlaces, OfAnUnknownProvinceLeaveNothingChosen) {
    place.choose({.province = QStringLiteral("MADRID"), .municipality = QStringLiteral("PARLA")});
    place.choose({.province = QStringLiteral("ATLANTIDA"), .municipality = QStringLiteral("PARLA")});
    EXPECT_FALSE(place.isChosen());
    EXPECT_EQ(place.municipality().provinceCode, "");
}

TEST_F(HostPlaces, OfAnAnswerAreFoundWithTheirArticleElsewhere) {
    QString municipality = QStringLiteral("EL ESCORIAL");
    EXPECT_TRUE(place.chooseForAnswer(QStringLiteral("MADRID"), municipality));
    EXPECT_EQ(chosenPlace(), "MADRID/ESCORIAL (EL)");
    EXPECT_EQ(municipality, QStringLiteral("ESCORIAL (EL)"));
    EXPECT_EQ(left, 1);
    municipality = QStringLiteral("NINGUNA PARTE"); // the province stays, and is not loaded again
    EXPECT_FALSE(place.chooseForAnswer(QStringLiteral("RIOJA, LA"), municipality));
    EXPECT_EQ(chosenPlace(), "MADRID/");
    EXPECT_EQ(left, 1);
}

TEST_F(HostPlaces, WithoutAProvinceAreAskedFor) {
    expectBox("Indique una provincia para poder seleccionar el municipio", "Faltan datos");
    place.CBProvinciasAmbrelExit();
    EXPECT_EQ(left, 1);
    EXPECT_EQ(municipalities.count(), 0);
}

} // namespace
