// The simulated service itself: how strict it is, what its directories hold, how faults are named.
#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>

#include "SimulatedDirectory.h"
#include "import/Document.h"
#include "import/Envelope.h"
#include "import/ResponseReaders.h"
#include "import/Transport.h"
#include "services/Confamb.h"
#include "support/Tables.h"
#include "support/TemporaryFolder.h"
#include "tools/callejero/CadastreNames.h"
#include "tools/callejero/Request.h"

namespace {

using ambrel::test::ansi;
using callejero::Fault;
using callejero::Operation;
using callejero::Received;
using callejero::WrongRequest;

/// A valid request, to be altered.
Received streetsRequest() {
    Config = {};
    return {.contentType = "text/xml; charset=utf-8",
            .soapAction = '"' + ambrel::soapAction("ConsultaVia") + '"',
            .body = ambrel::streetsRequest("LA RIOJA", "HARO")};
}

std::string replaced(std::string text, const std::string& from, const std::string& to) {
    const std::size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return text.replace(at, from.size(), to);
}

void expectWrong(const Received& received) {
    EXPECT_THROW(static_cast<void>(callejero::readRequest(received)), WrongRequest) << received.body;
}

TEST(SimulatedRequest, IsUnderstood) {
    const callejero::Request request = callejero::readRequest(streetsRequest());
    EXPECT_EQ(request.operation, Operation::Streets);
    EXPECT_EQ(request.province, "LA RIOJA");
    EXPECT_EQ(request.municipality, "HARO");
    EXPECT_TRUE(request.isXml());
}

TEST(SimulatedRequest, IsCheckedInItsHeader) {
    Received received = streetsRequest();
    for (const char* const type : {"", "text/xml", "text/xml; charset=UTF-8", "application/soap+xml"}) {
        received.contentType = type;
        expectWrong(received);
    }
    received = streetsRequest();
    for (const std::string& action :
         {std::string(), ambrel::soapAction("ConsultaVia"), '"' + ambrel::soapAction("Otra") + '"'}) {
        received.soapAction = action;
        expectWrong(received);
    }
}

TEST(SimulatedRequest, IsCheckedByteForByteInItsBody) {
    const Received good = streetsRequest();
    const auto expectWrongWith = [&good](const std::string& from, const std::string& to) {
        Received received = good;
        received.body = replaced(received.body, from, to);
        expectWrong(received);
    };
    expectWrongWith("?>\r", "?>\r\n");
    expectWrongWith("?>\r", "?>\n");
    expectWrongWith("utf-8", "UTF-8");
    expectWrongWith("xmlns:xsi", "xmlns:xsd");
    expectWrongWith("  <soap:Body>", "<soap:Body>");
    expectWrongWith("    <Municipio", "   <Municipio");
    expectWrongWith(" xmlns=\"http://www.catastro.meh.es/\">HARO", ">HARO");
    expectWrongWith("<TipoVia xmlns=\"http://www.catastro.meh.es/\"></TipoVia>",
                    "<TipoVia xmlns=\"http://www.catastro.meh.es/\" />");
    expectWrongWith("></TipoVia>", ">CL</TipoVia>");
    expectWrongWith("    <Provincia", "    <ConsultaVia>\r    <Provincia");
    expectWrongWith("</soap:Envelope>\r", "</soap:Envelope>");
    expectWrongWith("</soap:Envelope>\r", "</soap:Envelope>\r\r");
    expectWrongWith("HARO", "LOGRO\xD1O");
}

TEST(SimulatedRequest, ThatIsWrongGetsStatus400AndIsRemembered) {
    callejero::Server server(callejero::sampleDirectory());
    const std::string url = server.url() + std::string(callejero::servicePath);
    try {
        static_cast<void>(ambrel::postSoap(url, ambrel::soapAction("ConsultaProvincia"), "hola"));
        FAIL() << "a request that is none";
    } catch (const ambrel::TransportError& error) {
        EXPECT_NE(std::string(error.what()).find("el estado 400"), std::string::npos) << error.what();
    }
    EXPECT_EQ(server.complaints(), std::vector<std::string>({"línea 1: no acaba en retorno de carro"}));
    EXPECT_TRUE(server.requests().empty());
}

TEST(FaultNames, AreReadFromACommandLine) {
    const auto rule = callejero::readFaultRule("ConsultaVia:SANT LLUIS=corta-trozos");
    EXPECT_EQ(rule.operation, Operation::Streets);
    EXPECT_EQ(rule.name, "SANT LLUIS");
    EXPECT_EQ(rule.fault, Fault::CutChunked);
    EXPECT_FALSE(callejero::readFaultRule("todo=500").operation);
    for (const char* const text : {"", "corta", "ConsultaVia=nada", "Otra=corta"}) {
        EXPECT_THROW(static_cast<void>(callejero::readFaultRule(text)), std::invalid_argument) << text;
    }
}

TEST(CadastreNames, PutTheArticleInFront) {
    EXPECT_EQ(callejero::municipalityName("ROZAS DE MADRID, LAS"), "LAS ROZAS DE MADRID");
    EXPECT_EQ(callejero::municipalityName("HOSPITALET DE LLOBREGAT, L'"), "L'HOSPITALET DE LLOBREGAT");
    EXPECT_EQ(callejero::municipalityName("VILLAJOYOSA/VILA JOIOSA, LA"), "VILLAJOYOSA/LA VILA JOIOSA");
    EXPECT_EQ(callejero::municipalityName("SAUS, CAMALLERA I LLAMPAIES"), "SAUS, CAMALLERA I LLAMPAIES");
}

TEST(CadastreNames, AreCutAt30Characters) {
    EXPECT_EQ(callejero::municipalityName("CRUILLES, MONELLS I SANT SADURNI DE L'HEURA"),
              "CRUILLES, MONELLS I SANT SADUR");
    EXPECT_EQ(callejero::cutAt("ÑÑÑ Ñ", 4), "ÑÑÑ");
}

TEST(CadastreNames, OfProvincesHaveOneLanguage) {
    EXPECT_EQ(callejero::provinceName("ALICANTE/ALACANT"), "ALACANT");
    EXPECT_EQ(callejero::provinceName("CORUÑA, A"), "A CORUÑA");
    EXPECT_EQ(callejero::provinceName("STA. CRUZ DE TENERIFE"), "S.C. TENERIFE");
}

TEST(SampleDirectory, Has48ProvincesWithStreetsInEveryMunicipality) {
    const auto provinces = callejero::sampleProvinces();
    EXPECT_EQ(provinces.size(), 48u);
    for (const auto& province : provinces) {
        for (const auto& place : province.municipalities) {
            EXPECT_GE(place.streets.size(), 15u) << place.name;
            for (const auto& street : place.streets) {
                EXPECT_LE(ansi(street.name).size(), 25u) << street.name;
            }
        }
    }
}

class FolderDirectory : public ::testing::Test {
protected:
    static std::vector<std::string> names(const std::string& answer, bool ofProvinces) {
        ambrel::DirectoryDocument document;
        document.load(answer);
        return (ofProvinces ? ambrel::readProvinces(document) : ambrel::readMunicipalities(document)).names;
    }

    TemporaryFolder folder;
};

TEST_F(FolderDirectory, ServesWhatAnImportLeft) {
    std::filesystem::create_directories(folder / "LA RIOJA");
    folder.write("LA RIOJA/HARO.xml", "<haro/>");
    folder.write("LA RIOJA/A()B)(C.xml", "<abc/>");
    folder.write("26-OTRO.dat", "");
    const auto directory = callejero::folderDirectory(folder.path());
    EXPECT_EQ(names(directory->provinces(), true), std::vector<std::string>({"LA RIOJA"}));
    EXPECT_EQ(names(directory->municipalities("LA RIOJA"), false),
              std::vector<std::string>({"A/B\\C", "HARO"}));
    EXPECT_EQ(directory->streets("LA RIOJA", "HARO"), "<haro/>");
    EXPECT_EQ(directory->streets("LA RIOJA", "A/B\\C"), "<abc/>");
}

TEST_F(FolderDirectory, PrefersListsThatAreThere) {
    std::filesystem::create_directories(folder / "LA RIOJA");
    folder.write("provincias.xml", "<p/>");
    folder.write("LA RIOJA/municipios.xml", "<m/>");
    const auto directory = callejero::folderDirectory(folder.path());
    EXPECT_EQ(directory->provinces(), "<p/>");
    EXPECT_EQ(directory->municipalities("LA RIOJA"), "<m/>");
}

TEST_F(FolderDirectory, AnswersWithTheServicesErrors) {
    std::filesystem::create_directories(folder / "LA RIOJA");
    folder.write("fuera.xml", "<fuera/>");
    const auto directory = callejero::folderDirectory(folder.path());
    for (const char* const province : {"SORIA", "", ".", "..", "../x"}) {
        EXPECT_NE(directory->municipalities(province).find("LA PROVINCIA NO EXISTE"), std::string::npos);
        EXPECT_NE(directory->streets(province, "HARO").find("LA PROVINCIA NO EXISTE"), std::string::npos);
    }
    EXPECT_NE(directory->streets("LA RIOJA", "../fuera").find("EL MUNICIPIO NO EXISTE."), std::string::npos);
    EXPECT_THROW(static_cast<void>(callejero::folderDirectory(folder / "falta")), std::runtime_error);
}

TEST_F(FolderDirectory, ServesAnIndexOfAnswers) {
    std::filesystem::create_directories(folder / "soap");
    std::filesystem::create_directories(folder / "vias");
    folder.write("soap/provincias.xml", "<p xmlns=\"u\"><prov><cpine>26</cpine><np>LA RIOJA</np></prov></p>");
    folder.write("soap/municipios-26.xml", "<m/>");
    folder.write("vias/indice.csv", "fichero,cod_ine,provincia,municipio\nuno.xml,26071,LA RIOJA,HARO\n");
    folder.write("vias/uno.xml", "<uno/>");
    const auto directory = callejero::folderDirectory(folder.path());
    EXPECT_EQ(directory->municipalities("LA RIOJA"), "<m/>");
    EXPECT_EQ(directory->streets("LA RIOJA", "HARO"), "<uno/>");
    EXPECT_NE(directory->streets("LA RIOJA", "X").find("EL MUNICIPIO NO EXISTE."), std::string::npos);
}

TEST_F(FolderDirectory, OfAnIndexThatLacksSomethingIsRefusedInSpanish) {
    std::filesystem::create_directories(folder / "soap");
    std::filesystem::create_directories(folder / "vias");
    folder.write("soap/provincias.xml", "<p/>");
    const auto refusalOf = [this](const char* index) -> std::string {
        folder.write("vias/indice.csv", index);
        try {
            static_cast<void>(callejero::folderDirectory(folder.path()));
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return "taken";
    };
    EXPECT_EQ(refusalOf("fichero,provincia\nuno.xml,LA RIOJA\n"),
              "indice.csv: falta un valor de la columna «municipio»");
    EXPECT_EQ(refusalOf("fichero,provincia,municipio\nuno.xml,LA RIOJA,HARO,26\n"),
              "indice.csv: línea 2, carácter 1: la fila tiene más valores que columnas la cabecera");
}

TEST_F(FolderDirectory, OfAnIndexServesNothingFromOutside) {
    std::filesystem::create_directories(folder / "soap/municipios-x");
    std::filesystem::create_directories(folder / "vias");
    folder.write("secreto.xml", "<secreto/>");
    folder.write("soap/provincias.xml",
                 "<p><prov><cpine>x/../../secreto</cpine><np>LA RIOJA</np></prov></p>");
    folder.write("vias/indice.csv", "fichero,provincia,municipio\n../secreto.xml,LA RIOJA,HARO\n");
    const auto directory = callejero::folderDirectory(folder.path());
    EXPECT_EQ(directory->municipalities("LA RIOJA").find("secreto"), std::string::npos);
    EXPECT_EQ(directory->streets("LA RIOJA", "HARO").find("secreto"), std::string::npos);
}

TEST_F(FolderDirectory, OfAnIndexListsItsMunicipalitiesWhereAProvinceHasNoList) {
    std::filesystem::create_directories(folder / "soap");
    std::filesystem::create_directories(folder / "vias");
    folder.write("soap/provincias.xml", "<p><prov><cpine>39</cpine><np>CANTABRIA</np></prov>"
                                        "<prov><cpine>46</cpine><np>VALENCIA</np></prov></p>");
    folder.write("vias/indice.csv", "fichero,provincia,municipio\n"
                                    "a.xml,CANTABRIA,POTES\nb.xml,CANTABRIA,ARGOÑOS\n");
    const auto directory = callejero::folderDirectory(folder.path());
    const std::string list = directory->municipalities("CANTABRIA");
    EXPECT_NE(list.find("<cumun>2</cumun>"), std::string::npos) << list;
    EXPECT_LT(list.find("<nm>ARGOÑOS</nm>"), list.find("<nm>POTES</nm>")) << list;
    EXPECT_NE(directory->municipalities("VALENCIA").find("<des>"), std::string::npos);
}

} // namespace
