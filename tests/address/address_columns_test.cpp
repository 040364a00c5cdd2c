// Finds the columns of addresses by their names.
#include "address/AddressColumns.h"

#include <gtest/gtest.h>

#include <vector>

namespace ambrel {
namespace {

using Names = std::vector<std::string>;

/// The columns found, as a user would name them: "via=1 municipio=2".
std::string found(const Names& names, const NamedColumns& named = {}) {
    const AddressColumnPlaces places = findAddressColumns(names, named);
    std::string text;
    for (std::size_t i = 0; i < places.size(); ++i) {
        if (places[i]) {
            text += (text.empty() ? "" : " ") + std::string(addressColumnKey(static_cast<AddressColumn>(i))) +
                    '=' + std::to_string(*places[i]);
        }
    }
    return text;
}

std::string refusal(const Names& names, const NamedColumns& named = {}) {
    try {
        return "found " + found(names, named);
    } catch (const AddressColumnsError& error) {
        return error.what();
    }
}

TEST(AddressColumns, UsualNamesAreFound) {
    EXPECT_EQ(found({"ID", "TIPO_VIA", "VIA", "NUMERO", "PISO", "CP", "POBLACION", "PROVINCIA"}),
              "tipo=1 via=2 numero=3 resto=4 codpostal=5 municipio=6 provincia=7");
    for (const std::string name : {"MUNICIPIO", "POBLACION", "LOCALIDAD", "CIUDAD"}) {
        EXPECT_EQ(found({"CALLE", name}), "via=0 municipio=1") << name;
    }
    for (const std::string name : {"CP", "C.P.", "COD_POSTAL", "Código postal", "CODPOSTAL", "D.P."}) {
        EXPECT_EQ(found({"CALLE", name}), "via=0 codpostal=1") << name;
    }
    for (const std::string name : {"NUMERO", "Num.", "Nº", "Núm.", "NUM_VIA"}) {
        EXPECT_EQ(found({"CALLE", name, "CP"}), "via=0 numero=1 codpostal=2") << name;
    }
}

TEST(AddressColumns, CaseAccentsBlanksAndMarksDoNotMatter) {
    EXPECT_EQ(found({" domicilio ", "Población", "c.p.", "Provincia:"}),
              "via=0 codpostal=2 municipio=1 provincia=3");
}

TEST(AddressColumns, KeysAreNames) {
    EXPECT_EQ(found({"linea"}), "linea=0");
    EXPECT_EQ(found({"tipo", "via", "numero", "resto", "codpostal", "municipio", "provincia"}),
              "tipo=0 via=1 numero=2 resto=3 codpostal=4 municipio=5 provincia=6");
    for (std::size_t i = 0; i < addressColumnCount; ++i) {
        const auto column = static_cast<AddressColumn>(i);
        EXPECT_EQ(addressColumnOf(addressColumnKey(column)), column);
    }
    EXPECT_EQ(addressColumnOf("Vía"), AddressColumn::Street);
    EXPECT_EQ(addressColumnOf("calle"), std::nullopt);
    EXPECT_EQ(addressColumnOf(""), std::nullopt);
}

TEST(AddressColumns, AnAddressWithoutTheColumnOfAMunicipalityIsAWholeOne) {
    EXPECT_EQ(found({"ID", "DIRECCION"}), "linea=1");
    EXPECT_EQ(found({"ID", "DOMICILIO", "CP"}), "linea=1 codpostal=2");
    EXPECT_EQ(found({"ID", "DIRECCION", "MUNICIPIO"}), "via=1 municipio=2");
}

TEST(AddressColumns, NumberBeforeTheStreetIsThatOfACustomer) {
    EXPECT_EQ(found({"NUMERO", "NOMBRE", "CALLE", "CP"}), "via=2 codpostal=3");
    EXPECT_EQ(found({"NUM", "CALLE", "NUMERO", "CP"}), "via=1 numero=2 codpostal=3");
    EXPECT_EQ(found({"TIPO", "NOMBRE", "CALLE", "CP"}), "via=2 codpostal=3") << "a type of customer";
}

TEST(AddressColumns, NamedColumnsComeFirst) {
    EXPECT_EQ(found({"DIRECCION", "ENVIO", "POBLACION"}, {{AddressColumn::Street, "ENVIO"}}),
              "via=1 municipio=2");
    EXPECT_EQ(found({"A", "Población 2"},
                    {{AddressColumn::Street, "a"}, {AddressColumn::Municipality, "POBLACION_2"}}),
              "via=0 municipio=1");
    EXPECT_EQ(found({"X", "Y"}, {{AddressColumn::Street, "1"}, {AddressColumn::PostalCode, "2"}}),
              "via=0 codpostal=1")
        << "by number";
    EXPECT_EQ(found({"CALLE", "CP", "PROVINCIA"}, {{AddressColumn::Province, ""}}), "via=0 codpostal=1")
        << "not to be used";
}

TEST(AddressColumns, TwoThatMayBeTheSameAreRefused) {
    EXPECT_EQ(refusal({"CALLE", "LOCALIDAD", "MUNICIPIO"}),
              "las columnas «LOCALIDAD» y «MUNICIPIO» pueden ser las dos municipio: diga cuál lo es");
    EXPECT_EQ(found({"CALLE", "LOCALIDAD", "MUNICIPIO"}, {{AddressColumn::Municipality, "MUNICIPIO"}}),
              "via=0 municipio=2");
    EXPECT_EQ(refusal({"VIA", "VIA", "CP"}, {{AddressColumn::Street, "VIA"}}),
              "hay varias columnas «VIA»: en lugar del nombre, dé el número de la suya");
    EXPECT_EQ(found({"VIA", "VIA", "CP"}, {{AddressColumn::Street, "2"}}), "via=1 codpostal=2");
}

TEST(AddressColumns, WhatIsMissingIsSaidWithTheNames) {
    EXPECT_EQ(refusal({"ID", "NOMBRE"}),
              "no se reconoce la columna de la vía ni la de la dirección; las columnas son «ID», «NOMBRE»");
    EXPECT_EQ(
        refusal({"ID", "CALLE"}),
        "no se reconoce la columna del municipio ni la del código postal; las columnas son «ID», «CALLE»");
    EXPECT_EQ(refusal({"ID", "CALLE", "CP"}, {{AddressColumn::Street, "VÍA"}}),
              "no hay ninguna columna «VÍA»; las columnas son «ID», «CALLE», «CP»");
}

} // namespace
} // namespace ambrel
