// Contents of the shared library: this program would not link if something were missing.
#include <functional>
#include <string>

#include "PackageTest.h"

namespace {

class PackageContentsTest : public package_tests::PackageTest {};

TEST_F(PackageContentsTest, LoadingItCreatesNoDataModule) {
    EXPECT_EQ(DMCodPostales, nullptr);
    EXPECT_EQ(DMMunicipi, nullptr);
    EXPECT_EQ(DMVias, nullptr);
}

TEST_F(PackageContentsTest, CarriesTheControllerAndTheDataModules) {
    TClassCodPostales controller;
    EXPECT_FALSE(controller.BuscaPorNombreMunicipi("MADRID", true));
    const TDMMunicipi municipalities;
    const TDMVias types;
    EXPECT_EQ(LocalizaProvincia("28001"), "");
}

TEST_F(PackageContentsTest, CarriesTheLookups) {
    EXPECT_EQ(Tipo_Via("CL", false, false), "");
    EXPECT_EQ(Tipo_ViaPorNombre("CALLE"), "");
    EXPECT_EQ(Nombre_Via("CL"), "");
    QString (*const locate)(dbase::Dataset&, const QString&, QString&) = LocalizaProvincia;
    EXPECT_TRUE(std::function(locate) && std::function(Tipo_Via2) && std::function(Domicilio) &&
                std::function(SeleccionaProvincia));
    EXPECT_TRUE(std::function(IMunicipios) && std::function(IMunicipiosMJ) &&
                std::function(IBuscaMunicipio) && std::function(IBuscaMunicipioMJ));
}

TEST_F(PackageContentsTest, CarriesTheDialogs) {
    for (const QMetaObject* dialog :
         {&TFMunicipiLista::staticMetaObject, &TFBuscarMunicipios::staticMetaObject,
          &TFMunicipiListaMJ::staticMetaObject, &TFProvList::staticMetaObject,
          &TFTipoViasLista::staticMetaObject, &TFBuscarDireccionPostal::staticMetaObject,
          &TFFichaVia::staticMetaObject, &TFImportarVias::staticMetaObject}) {
        EXPECT_TRUE(dialog->inherits(&QDialog::staticMetaObject)) << dialog->className();
    }
}

TEST_F(PackageContentsTest, SaysTheVersionThatItWasBuiltAs) {
    EXPECT_STREQ(ambrel::version(), AMBREL_PROJECT_VERSION);
    EXPECT_EQ(ambrel::versionNumber(), AMBREL_VERSION);
}

TEST_F(PackageContentsTest, TheHeadersHaveTheVersionAsTextAndAsNumbersToCompare) {
    EXPECT_STREQ(AMBREL_VERSION_TEXT, AMBREL_PROJECT_VERSION);
    EXPECT_EQ(std::to_string(AMBREL_VERSION_MAJOR) + '.' + std::to_string(AMBREL_VERSION_MINOR) + '.' +
                  std::to_string(AMBREL_VERSION_PATCH),
              AMBREL_PROJECT_VERSION);
    EXPECT_EQ(AMBREL_VERSION,
              AMBREL_VERSION_CHECK(AMBREL_VERSION_MAJOR, AMBREL_VERSION_MINOR, AMBREL_VERSION_PATCH));
    EXPECT_LT(AMBREL_VERSION_CHECK(0, 2, 9), AMBREL_VERSION_CHECK(0, 10, 0));
    EXPECT_LT(AMBREL_VERSION_CHECK(0, 10, 0), AMBREL_VERSION_CHECK(1, 0, 0));
}

} // namespace
