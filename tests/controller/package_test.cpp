// The package as a host sees it: one header, one library.
#include "package/AmbCodPostales.h"

#include <gtest/gtest.h>

#include <functional>

#include "support/TemporaryFolder.h"

namespace {

TEST(Package, LoadingItCreatesNoDataModule) {
    EXPECT_EQ(DMCodPostales, nullptr);
    EXPECT_EQ(DMMunicipi, nullptr);
    EXPECT_EQ(DMVias, nullptr);
}

TEST(Package, CarriesEverythingThatAHostUses) {
    const TemporaryFolder folder;
    for (const dbase::TableDefinition& definition : ambrel::tableDefinitions())
        dbase::createTable(folder.path(), definition);
    Config.setDatabase("DB", folder.path());
    TClassCodPostales controller;
    EXPECT_FALSE(controller.BuscaPorNombreMunicipi("MADRID", true));
    const TDMMunicipi municipalities;
    const TDMVias types;
    EXPECT_EQ(LocalizaProvincia("28001"), "");
}

TEST(Package, CarriesTheLookups) {
    const TemporaryFolder folder;
    for (const dbase::TableDefinition& definition : ambrel::tableDefinitions())
        dbase::createTable(folder.path(), definition);
    Config.setDatabase("DB", folder.path());
    EXPECT_EQ(Tipo_Via("CL", false, false), "");
    EXPECT_EQ(Tipo_ViaPorNombre("CALLE"), "");
    EXPECT_EQ(Nombre_Via("CL"), "");
    QString (*const locate)(dbase::Dataset&, const QString&, QString&) = LocalizaProvincia;
    EXPECT_TRUE(std::function(locate) && std::function(Tipo_Via2) && std::function(Domicilio) &&
                std::function(SeleccionaProvincia));
    EXPECT_TRUE(std::function(IMunicipios) && std::function(IMunicipiosMJ) &&
                std::function(IBuscaMunicipio) && std::function(IBuscaMunicipioMJ));
}

TEST(Package, CarriesTheDialogs) {
    for (const QMetaObject* dialog :
         {&TFMunicipiLista::staticMetaObject, &TFBuscarMunicipios::staticMetaObject,
          &TFMunicipiListaMJ::staticMetaObject, &TFProvList::staticMetaObject,
          &TFTipoViasLista::staticMetaObject, &TFBuscarDireccionPostal::staticMetaObject,
          &TFFichaVia::staticMetaObject})
        EXPECT_TRUE(dialog->inherits(&QDialog::staticMetaObject)) << dialog->className();
}

} // namespace
