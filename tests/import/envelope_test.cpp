// The requests, byte for byte.
#include "import/Envelope.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "services/Confamb.h"
#include "support/Tables.h"

namespace {

using ambrel::test::ansi;

const std::string opening = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\r"
                            "<soap:Envelope xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\""
                            " xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\""
                            " xmlns:soap=\"http://schemas.xmlsoap.org/soap/envelope/\">\r"
                            "  <soap:Body>\r";
const std::string closing = "  </soap:Body>\r"
                            "</soap:Envelope>\r";

class Envelope : public ::testing::Test {
protected:
    Envelope() { Config = {}; }
    ~Envelope() override { Config = {}; }
};

TEST_F(Envelope, OfTheProvincesHasFiveLinesEachEndedByACarriageReturnAlone) {
    const std::string text = ambrel::provincesRequest();
    EXPECT_EQ(text, opening + closing);
    EXPECT_EQ(std::ranges::count(text, '\r'), 5);
    EXPECT_EQ(std::ranges::count(text, '\n'), 0);
}

TEST_F(Envelope, OfTheMunicipalitiesNamesTheProvinceAndAnEmptyMunicipality) {
    EXPECT_EQ(ambrel::municipalitiesRequest("MADRID"),
              opening +
                  "    <Provincia xmlns=\"http://www.catastro.meh.es/\">MADRID</Provincia>\r"
                  "    <Municipio xmlns=\"http://www.catastro.meh.es/\"></Municipio>\r" +
                  closing);
}

TEST_F(Envelope, OfTheStreetsHasNoElementOfTheOperationAroundItsParameters) {
    EXPECT_EQ(ambrel::streetsRequest("LA RIOJA", "HARO"),
              opening +
                  "    <Provincia xmlns=\"http://www.catastro.meh.es/\">LA RIOJA</Provincia>\r"
                  "    <Municipio xmlns=\"http://www.catastro.meh.es/\">HARO</Municipio>\r"
                  "    <TipoVia xmlns=\"http://www.catastro.meh.es/\"></TipoVia>\r"
                  "    <NombreVia xmlns=\"http://www.catastro.meh.es/\"></NombreVia>\r" +
                  closing);
}

TEST_F(Envelope, TakesNamesUnescapedAndUntrimmedAsTheyAreShown) {
    const std::string text = ambrel::streetsRequest(ansi("A CORUÑA"), "  a & <b>  ");
    EXPECT_NE(text.find(">A CORU\xD1"
                        "A</Provincia>"),
              std::string::npos);
    EXPECT_NE(text.find(">  a & <b>  </Municipio>"), std::string::npos);
}

TEST_F(Envelope, UsesTheConfiguredService) {
    Config.directoryService = {
        .server = "http://127.0.0.1:8099", .actionPrefix = "http://pruebas", .xmlNamespace = "urn:callejero"};
    EXPECT_EQ(ambrel::directoryUrl(),
              "http://127.0.0.1:8099/ovcservweb/OVCSWLocalizacionRC/OVCCallejero.asmx");
    EXPECT_EQ(ambrel::soapAction("ConsultaVia"), "http://pruebas/OVCServWeb/OVCCallejero/ConsultaVia");
    EXPECT_NE(ambrel::municipalitiesRequest("X").find("<Provincia xmlns=\"urn:callejero\">X<"),
              std::string::npos);
}

TEST_F(Envelope, TakesAddressesOfTheServiceWithASlashAtTheirEnd) {
    Config.directoryService = {.server = "http://127.0.0.1:8099/", .actionPrefix = "http://pruebas//"};
    EXPECT_EQ(ambrel::directoryUrl(),
              "http://127.0.0.1:8099/ovcservweb/OVCSWLocalizacionRC/OVCCallejero.asmx");
    EXPECT_EQ(ambrel::soapAction("ConsultaVia"), "http://pruebas/OVCServWeb/OVCCallejero/ConsultaVia");
    EXPECT_NE(ambrel::municipalitiesRequest("X").find("xmlns=\"http://www.catastro.meh.es/\""),
              std::string::npos)
        << "the namespace is a name, not an address";
}

TEST_F(Envelope, SpeaksToThePublicServiceAtFirst) {
    EXPECT_EQ(ambrel::directoryUrl(),
              "http://ovc.catastro.meh.es/ovcservweb/OVCSWLocalizacionRC/OVCCallejero.asmx");
    EXPECT_EQ(ambrel::soapAction("ConsultaProvincia"),
              "http://tempuri.org/OVCServWeb/OVCCallejero/ConsultaProvincia");
}

} // namespace
