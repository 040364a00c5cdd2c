// The values read from the answers.
#include "import/ResponseReaders.h"

#include <gtest/gtest.h>

#include "import/Document.h"
#include "support/Tables.h"

namespace {

using ambrel::ImportedStreet;
using ambrel::Reading;
using ambrel::test::ansi;

std::string inEnvelope(const std::string& root) {
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?>"
           "<soap:Envelope xmlns:soap=\"http://schemas.xmlsoap.org/soap/envelope/\">"
           "<soap:Body><Respuesta>" +
           root + "</Respuesta></soap:Body></soap:Envelope>";
}

std::string streets(const std::string& count, const std::string& entries) {
    return inEnvelope("<r><control><cuca>" + count + "</cuca></control><callejero>" + entries +
                      "</callejero></r>");
}

std::string street(const std::string& type, const std::string& name) {
    return "<calle><loine><cp>28</cp></loine><dir><cv>1</cv><tv>" + type + "</tv><nv>" + name +
           "</nv></dir></calle>";
}

ambrel::StreetList readStreets(const std::string& text) {
    ambrel::DirectoryDocument document;
    document.load(text);
    return ambrel::readStreets(document);
}

ambrel::NameList readProvinces(const std::string& text) {
    ambrel::DirectoryDocument document;
    document.load(text);
    return ambrel::readProvinces(document);
}

TEST(DirectoryAnswer, WithMoreCountedThanListedIsPartial) {
    const auto list = readStreets(streets("3", street("CL", "MAYOR") + street("PZ", "NUEVA")));
    EXPECT_EQ(list.reading, Reading::Partial);
    EXPECT_EQ(list.streets.size(), 2u);
    EXPECT_EQ(list.count, 3);
}

TEST(DirectoryAnswer, WithAnAbsurdCountEndsAtOnce) {
    const auto list = readStreets(streets("2147483647", street("CL", "MAYOR")));
    EXPECT_EQ(list.reading, Reading::Partial);
    EXPECT_EQ(list.streets.size(), 1u);
}

/// Drawing a text may run a call that the host has posted, and that may ask the service anew.
TEST(DirectoryAnswer, WhoseDocumentAnotherReplacesAtItsRootIsReadFromThatOne) {
    ambrel::DirectoryDocument document;
    document.load(streets("1", street("CL", "MAYOR")));
    const auto list = ambrel::readStreets(
        document, [&] { document.load(streets("2", street("PZ", "NUEVA") + street("CL", "LUNA"))); });
    EXPECT_EQ(list.reading, Reading::Whole);
    ASSERT_EQ(list.streets.size(), 2u);
    EXPECT_EQ(list.streets[0].name, "NUEVA");
}

TEST(DirectoryAnswer, WhoseDocumentIsClearedAtItsRootHasNoRoot) {
    ambrel::DirectoryDocument document;
    document.load(streets("1", street("CL", "MAYOR")));
    const auto list = ambrel::readStreets(document, [&] { document.clear(); });
    EXPECT_EQ(list.reading, Reading::NoRoot);
    EXPECT_TRUE(list.streets.empty());
}

TEST(DirectoryAnswer, WithLessCountedThanListedStopsAtTheCount) {
    const auto list = readStreets(streets("1", street("CL", "MAYOR") + street("PZ", "NUEVA")));
    EXPECT_EQ(list.reading, Reading::Whole);
    EXPECT_EQ(list.streets.size(), 1u);
}

TEST(DirectoryAnswer, WithoutCountHasNothingAndIsWhole) {
    const auto list = readStreets(inEnvelope("<r><callejero>" + street("CL", "MAYOR") + "</callejero></r>"));
    EXPECT_EQ(list.reading, Reading::Whole);
    EXPECT_FALSE(list.count);
    EXPECT_TRUE(list.streets.empty());
}

TEST(DirectoryAnswer, WithoutListHasNothingAndIsWhole) {
    const auto list = readStreets(inEnvelope("<r><control><cuca>2</cuca></control></r>"));
    EXPECT_EQ(list.reading, Reading::Whole);
    EXPECT_EQ(list.count, 2);
    EXPECT_TRUE(list.streets.empty());
}

TEST(DirectoryAnswer, WithACountThatIsNoNumberIsMalformed) {
    for (const char* const count : {"", "tres", "3x", "99999999999"}) {
        EXPECT_EQ(readStreets(streets(count, street("CL", "MAYOR"))).reading, Reading::NoRoot) << count;
    }
}

TEST(DirectoryAnswer, OfAnErrorHasNothing) {
    const std::string error = inEnvelope("<r><control><cuerr>1</cuerr></control>"
                                         "<lerr><err><cod>12</cod><des>LA PROVINCIA NO EXISTE</des></err>"
                                         "</lerr></r>");
    EXPECT_EQ(readStreets(error).reading, Reading::Whole);
    EXPECT_TRUE(readStreets(error).streets.empty());
    EXPECT_TRUE(readProvinces(error).names.empty());
}

TEST(DirectoryAnswer, ThatIsNoneOfTheServiceHasNoRoot) {
    for (const char* const text : {"<html><body><p>503</p></body></html>", "<soap:Envelope/>",
                                   "<soap:Envelope><soap:Body/></soap:Envelope>",
                                   "<soap:Envelope><soap:Body><r/></soap:Body></soap:Envelope>",
                                   "<s:Envelope><s:Body><r><d/></r></s:Body></s:Envelope>"}) {
        EXPECT_EQ(readStreets(text).reading, Reading::NoRoot) << text;
    }
}

TEST(DirectoryAnswer, OfAFaultHasNothing) {
    const auto list = readStreets("<soap:Envelope><soap:Body><soap:Fault><faultcode>soap:Server</faultcode>"
                                  "<faultstring>x</faultstring></soap:Fault></soap:Body></soap:Envelope>");
    EXPECT_TRUE(list.streets.empty());
    EXPECT_FALSE(list.count);
}

TEST(DirectoryAnswer, OfAnEmptyDocumentIsEmpty) {
    EXPECT_EQ(readStreets("").reading, Reading::Empty);
    EXPECT_EQ(readProvinces("").reading, Reading::Empty);
}

TEST(DirectoryAnswer, IsReadIndentedToo) {
    const auto list =
        readStreets("<soap:Envelope>\r\n  <soap:Body>\r\n  <!-- x --> texto <r>\r\n <d>\r\n"
                    "<control>\r\n <cuca> 1 </cuca></control>\r\n<callejero>\r\n texto " +
                    street("CL", "MAYOR") + "\r\n</callejero></d></r></soap:Body></soap:Envelope>");
    EXPECT_EQ(list.streets, std::vector<ImportedStreet>({{.type = "CL", .name = "MAYOR"}}));
}

TEST(StreetOfAnAnswer, IsTrimmed) {
    EXPECT_EQ(readStreets(streets("1", street("  CL ", "  NUMERO   51 "))).streets,
              std::vector<ImportedStreet>({{.type = "CL", .name = "NUMERO   51"}}));
}

TEST(StreetOfAnAnswer, Of50CharactersIsCutTo45) {
    const std::string name(50, 'A');
    EXPECT_EQ(readStreets(streets("1", street("CL", name))).streets.front().name, std::string(45, 'A'));
}

TEST(StreetOfAnAnswer, CountsCharactersNotBytes) {
    std::string name;
    for (int i = 0; i < 46; ++i) {
        name += "Ñ";
    }
    EXPECT_EQ(readStreets(streets("1", street("CL", name))).streets.front().name, std::string(45, '\xD1'));
}

TEST(StreetOfAnAnswer, WithoutNameHasTheTypeInItsPlace) {
    EXPECT_EQ(readStreets(streets("1", "<calle><dir><tv>CL</tv></dir></calle>")).streets,
              std::vector<ImportedStreet>({{.type = "CL", .name = "CL"}}));
}

TEST(StreetOfAnAnswer, WithoutTypeHasItsNameAlone) {
    EXPECT_EQ(readStreets(streets("1", "<calle><dir><nv>MAYOR</nv></dir></calle>")).streets,
              std::vector<ImportedStreet>({{.type = "", .name = "MAYOR"}}));
}

TEST(StreetOfAnAnswer, WithoutAddressIsSkipped) {
    const auto list = readStreets(streets("2", "<calle><x/></calle>" + street("CL", "MAYOR")));
    EXPECT_EQ(list.reading, Reading::Whole);
    EXPECT_EQ(list.streets.size(), 1u);
}

TEST(StreetOfAnAnswer, HasItsNearestLettersWhereTheTablesLackOne) {
    EXPECT_EQ(readStreets(streets("1", street("CL", "ŁÓDŹ 日 Ñ&amp;&#xC7;"))).streets.front().name,
              ansi("LÓDZ ? Ñ&Ç"));
}

TEST(StreetOfAnAnswer, SurvivesBytesThatAreNoUtf8) {
    EXPECT_EQ(readStreets(streets("1", street("CL", "PE\xD1"
                                                    "A")))
                  .streets.front()
                  .name,
              "PE?A");
}

TEST(NamesOfAnAnswer, ComeUntrimmedInTheOrderOfTheAnswer) {
    const auto list = readProvinces(inEnvelope("<r><control><cuprov>2</cuprov></control><provinciero>"
                                               "<prov><cpine>15</cpine><np>A CORUÑA</np></prov>"
                                               "<prov><np> S.C. TENERIFE </np></prov></provinciero></r>"));
    EXPECT_EQ(list.reading, Reading::Whole);
    EXPECT_EQ(list.names, std::vector<std::string>({ansi("A CORUÑA"), " S.C. TENERIFE "}));
}

TEST(NamesOfAnAnswer, WithoutNameArePartialAndTheRestIsRead) {
    const auto list = readProvinces(inEnvelope("<r><control><cuprov>2</cuprov></control><provinciero>"
                                               "<prov/><prov><np>MADRID</np></prov></provinciero></r>"));
    EXPECT_EQ(list.reading, Reading::Partial);
    EXPECT_EQ(list.names, std::vector<std::string>({"MADRID"}));
}

TEST(NamesOfAnAnswer, OfMunicipalitiesAreTheirNm) {
    ambrel::DirectoryDocument document;
    document.load(inEnvelope("<r><control><cumun>1</cumun></control><municipiero><muni><nm>HARO</nm>"
                             "<locat><cd>26</cd></locat></muni></municipiero></r>"));
    bool told = false;
    EXPECT_EQ(ambrel::readMunicipalities(document, [&] { told = true; }).names,
              std::vector<std::string>({"HARO"}));
    EXPECT_TRUE(told);
}

TEST(NamesOfAnAnswer, SaysNothingOfARootThatIsNotThere) {
    ambrel::DirectoryDocument document;
    document.load("<html/>");
    bool told = false;
    EXPECT_TRUE(ambrel::readMunicipalities(document, [&] { told = true; }).names.empty());
    EXPECT_FALSE(told);
}

TEST(DirectoryAnswer, WithANameThatNoFileCouldHaveIsPartial) {
    const auto provinces = [](const std::string& name) {
        return readProvinces(inEnvelope("<r><control><cuprov>2</cuprov></control><provinciero><prov><np>" +
                                        name + "</np></prov><prov><np>SORIA</np></prov></provinciero></r>"));
    };
    EXPECT_EQ(provinces(std::string(250, 'x')).reading, Reading::Whole);
    const auto list = provinces(std::string(251, 'x'));
    EXPECT_EQ(list.reading, Reading::Partial);
    EXPECT_EQ(list.names, std::vector<std::string>({"SORIA"}));
}

TEST(DirectoryAnswer, WithEndlessTextsHasShortOnes) {
    const std::string endless(5'000'000, 'x');
    const auto list = readStreets(streets("2", street(endless, endless) + street(endless, "")));
    ASSERT_EQ(list.streets.size(), 2u);
    EXPECT_EQ(list.streets[0].type, std::string(45, 'x'));
    EXPECT_EQ(list.streets[0].name, std::string(45, 'x'));
}

TEST(DirectoryAnswer, WithALetterOfAMillionMarksIsReadAtOnce) {
    std::string marks = "A";
    for (int i = 0; i < 1'000'000; ++i) {
        marks += i % 2 ? "\xCC\x81" : "\xCC\x96"; // above and below, in the order that takes longest to sort
    }
    const auto list = readStreets(streets("1", street("CL", marks)));
    ASSERT_EQ(list.streets.size(), 1u);
    EXPECT_EQ(list.streets[0].name, "\xC1" + std::string(44, '?'));
}

} // namespace
