// The package as a host sees it: one header, one library.
#include "package/AmbCodPostales.h"

#include <gtest/gtest.h>

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

} // namespace
