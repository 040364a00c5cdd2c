// The exchange with the service: what is sent, and that an answer arrives as a whole or not at all.
#include "import/Transport.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include <curl/curl.h>

#include "RawServer.h"
#include "SimulatedDirectory.h"
#include "dbase/dbf/codepage.h"
#include "import/Document.h"
#include "import/Envelope.h"
#include "import/ResponseReaders.h"
#include "support/Tables.h"

namespace {

using ambrel::Reading;
using ambrel::TransportError;
using ambrel::test::ansi;
using callejero::Fault;
using callejero::Operation;

const std::string head = "HTTP/1.1 200 OK\r\nContent-Type: text/xml\r\n";

std::string utf8(const std::string& text) { return dbase::CodePage::windows1252().toUtf8(text); }

/// Ignores the proxies in the environment.
class Transport : public ::testing::Test {
protected:
    Transport() {
        for (const char* const name : {"http_proxy", "all_proxy", "ALL_PROXY", "no_proxy", "NO_PROXY"}) {
            unsetenv(name);
        }
    }
    ~Transport() override { unsetenv("http_proxy"); }

    static std::string post(const std::string& url, const std::string& body = "hola") {
        return ambrel::postSoap(url, "urn:saludo", body);
    }

    /// The transport's answer for these bytes.
    static std::string answered(const std::string& bytes) {
        RawServer server({bytes});
        return post(server.url());
    }

    /// The text of the failure with a peer that answers so; empty when there is none.
    static std::string failure(const std::string& bytes) {
        try {
            answered(bytes);
        } catch (const TransportError& error) {
            return error.what();
        }
        return {};
    }
};

TEST_F(Transport, SendsARequestByteForByte) {
    RawServer server({head + "Content-Length: 2\r\n\r\nsi"});
    const std::string body = utf8(ambrel::streetsRequest(ansi("A CORUÑA"), "  a & <b>"));
    EXPECT_EQ(ambrel::postSoap(server.url() + "/ovcservweb/OVCSWLocalizacionRC/OVCCallejero.asmx",
                               ambrel::soapAction("ConsultaVia"), body),
              "si");
    const std::string host = server.url().substr(std::string("http://").size());
    EXPECT_EQ(server.requests().at(0),
              "POST /ovcservweb/OVCSWLocalizacionRC/OVCCallejero.asmx HTTP/1.1\r\n"
              "Host: " +
                  host + "\r\nUser-Agent: " + curl_version() +
                  "\r\nAccept: */*\r\n"
                  "Content-Type: text/xml; charset=utf-8\r\n"
                  "SOAPAction: \"http://tempuri.org/OVCServWeb/OVCCallejero/ConsultaVia\"\r\n"
                  "Content-Length: " +
                  std::to_string(body.size()) +
                  "\r\n\r\n"
                  "<?xml version=\"1.0\" encoding=\"utf-8\"?>\r"
                  "<soap:Envelope xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\""
                  " xmlns:xsd=\"http://www.w3.org/2001/XMLSchema\""
                  " xmlns:soap=\"http://schemas.xmlsoap.org/soap/envelope/\">\r"
                  "  <soap:Body>\r"
                  "    <Provincia xmlns=\"http://www.catastro.meh.es/\">A CORU\xC3\x91"
                  "A</Provincia>\r"
                  "    <Municipio xmlns=\"http://www.catastro.meh.es/\">  a & <b></Municipio>\r"
                  "    <TipoVia xmlns=\"http://www.catastro.meh.es/\"></TipoVia>\r"
                  "    <NombreVia xmlns=\"http://www.catastro.meh.es/\"></NombreVia>\r"
                  "  </soap:Body>\r"
                  "</soap:Envelope>\r");
}

TEST_F(Transport, NeverAsksFirstWhetherABodyIsWelcome) {
    RawServer server({head + "Content-Length: 0\r\n\r\n"});
    EXPECT_EQ(post(server.url(), std::string(2'000'000, 'x')), "");
    EXPECT_EQ(server.requests().at(0).find("Expect"), std::string::npos);
    EXPECT_TRUE(server.requests().at(0).ends_with("\r\n\r\n" + std::string(2'000'000, 'x')));
}

TEST_F(Transport, DeliversTheWholeBodyHoweverItComes) {
    EXPECT_EQ(answered(head + "Content-Length: 4\r\n\r\nabcd"), "abcd");
    EXPECT_EQ(answered(head + "Transfer-Encoding: chunked\r\n\r\n3\r\nabc\r\n1\r\nd\r\n0\r\n\r\n"), "abcd");
    EXPECT_EQ(answered(head + "Connection: close\r\n\r\nabcd"), "abcd");
    EXPECT_EQ(answered(head + "Transfer-Encoding: chunked\r\nTrailer: X\r\n\r\n1\r\na\r\n0\r\nX: y\r\n\r\n"),
              "a");
    EXPECT_EQ(answered("HTTP/1.1 100 Continue\r\n\r\n" + head + "Content-Length: 4\r\n\r\nabcd"), "abcd");
    EXPECT_EQ(answered(head + std::string("Content-Length: 3\r\n\r\na\0b", 24)), std::string("a\0b", 3));
}

TEST_F(Transport, RefusesATruncatedBody) {
    EXPECT_NE(failure(head + "Content-Length: 5\r\n\r\nabcd").find("ha llegado cortada"), std::string::npos);
    EXPECT_NE(failure(head + "Content-Length: 5\r\n\r\n"), "");
}

TEST_F(Transport, RefusesATruncatedChunkedBody) {
    const std::string chunked = head + "Transfer-Encoding: chunked\r\n\r\n";
    EXPECT_NE(failure(chunked + "3\r\nabc\r\n"), "") << "without the last chunk";
    EXPECT_NE(failure(chunked + "3\r\nab"), "") << "within a chunk";
    EXPECT_NE(failure(chunked + "3\r\nabc\r\nzz\r\n"), "") << "a size that is no number";
}

TEST_F(Transport, RefusesATruncatedOrForeignHeader) {
    EXPECT_NE(failure(""), "");
    EXPECT_NE(failure("HTTP/1.1 200 OK\r\nContent-Le"), "");
    EXPECT_NE(failure("HTTP/1.1 200 OK\r\n"), "");
    EXPECT_NE(failure("HTTP/1.1 100 Continue\r\n\r\n"), "");
    EXPECT_NE(failure("<soap:Envelope/>"), "") << "no HTTP at all";
}

TEST_F(Transport, RefusesAnAnnouncedAnswerOf2GiB) {
    EXPECT_NE(failure(head + "Content-Length: 2147483648\r\n\r\nabcd").find("demasiado grande"),
              std::string::npos);
}

TEST_F(Transport, RefusesAHeadWithoutEnd) {
    const std::string line = "X: " + std::string(1000, 'x') + "\r\n";
    std::string lines, replies;
    for (int i = 0; i < 300; ++i) {
        lines += line;
        replies += "HTTP/1.1 100 Continue\r\n" + line + "\r\n";
    }
    EXPECT_EQ(answered(head + lines.substr(0, 200 * line.size()) + "Content-Length: 2\r\n\r\nsi"), "si");
    EXPECT_NE(failure(head + lines + "Content-Length: 2\r\n\r\nsi").find("demasiado grande"),
              std::string::npos);
    EXPECT_NE(failure(replies + head + "Content-Length: 2\r\n\r\nsi").find("demasiado grande"),
              std::string::npos);
    EXPECT_NE(failure(head + "Transfer-Encoding: chunked\r\n\r\n2\r\nsi\r\n0\r\n" + lines + "\r\n"), "")
        << "lines behind the body";
}

TEST_F(Transport, NeverUnpacksACompressedAnswer) {
    EXPECT_EQ(answered(head + "Content-Encoding: gzip\r\nContent-Length: 3\r\n\r\n\x1F\x8B\x08"),
              "\x1F\x8B\x08");
}

TEST_F(Transport, RefusesAStatusOf400AndOver) {
    for (const char* const status : {"400 Bad Request", "403 Forbidden", "404 Not Found", "407 Proxy",
                                     "500 Internal Server Error", "503 Unavailable", "599 x"}) {
        EXPECT_NE(failure(std::string("HTTP/1.1 ") + status + "\r\nContent-Length: 2\r\n\r\nsi")
                      .find("el estado " + std::string(status, 3)),
                  std::string::npos)
            << status;
    }
    EXPECT_EQ(answered("HTTP/1.1 299 x\r\nContent-Length: 2\r\n\r\nsi"), "si");
}

TEST_F(Transport, TakesAnEmptyBodyFromStatus200Only) {
    EXPECT_EQ(answered(head + "Content-Length: 0\r\n\r\n"), "");
    for (const char* const status : {"201 Created", "202 Accepted", "204 No Content", "205 Reset Content"}) {
        EXPECT_NE(failure(std::string("HTTP/1.1 ") + status + "\r\nContent-Length: 0\r\n\r\n")
                      .find("el estado " + std::string(status, 3)),
                  std::string::npos)
            << status;
    }
}

TEST_F(Transport, RefusesARedirectionThatLeadsNowhere) {
    for (const char* const status : {"300 Multiple Choices", "301 Moved", "302 Found", "303 See Other",
                                     "304 Not Modified", "307 Temporary", "308 Permanent"}) {
        for (const char* const rest : {"Content-Length: 0\r\n\r\n", "Content-Length: 4\r\n\r\n<a/>"}) {
            EXPECT_NE(failure(std::string("HTTP/1.1 ") + status + "\r\n" + rest), "") << status << rest;
        }
    }
}

TEST_F(Transport, SendsTheRequestAgainWhereItIsRedirected) {
    for (const char* const status : {"301", "302", "303", "307", "308"}) {
        RawServer server({std::string("HTTP/1.1 ") + status +
                              " x\r\nLocation: /otra\r\nContent-Length: 3\r\nConnection: close\r\n\r\nno!",
                          head + "Content-Length: 2\r\n\r\nsi"});
        EXPECT_EQ(post(server.url()), "si") << status;
        ASSERT_EQ(server.requests().size(), 2u);
        EXPECT_TRUE(server.requests()[1].starts_with("POST /otra ")) << status;
        EXPECT_NE(server.requests()[1].find("SOAPAction: \"urn:saludo\"\r\n"), std::string::npos);
        EXPECT_TRUE(server.requests()[1].ends_with("\r\n\r\nhola")) << status;
    }
}

TEST_F(Transport, DoesNotFollowRedirectionsForEver) {
    const std::string again =
        "HTTP/1.1 302 x\r\nLocation: /\r\nContent-Length: 0\r\nConnection: close\r\n\r\n";
    RawServer server({again, again, again, again, again, again, again});
    EXPECT_THROW(post(server.url()), TransportError);
}

TEST_F(Transport, OnlyGoesWhereHttpLeads) {
    EXPECT_NE(failure("HTTP/1.1 302 x\r\nLocation: file:///etc/passwd\r\nContent-Length: 0\r\n\r\n"), "");
    EXPECT_NE(failure("HTTP/1.1 302 x\r\nLocation: ftp://127.0.0.1/x\r\nContent-Length: 0\r\n\r\n"), "");
    EXPECT_THROW(post("file:///etc/passwd"), TransportError);
    EXPECT_THROW(post(""), TransportError);
}

TEST_F(Transport, SaysWhenNobodyListens) {
    std::string url;
    {
        const RawServer gone({});
        url = gone.url();
    }
    EXPECT_THROW(post(url), TransportError);
}

TEST_F(Transport, TakesTheProxyOfTheEnvironment) {
    RawServer proxy({head + "Content-Length: 2\r\n\r\nsi"});
    setenv("http_proxy", proxy.url().c_str(), 1);
    EXPECT_EQ(post("http://callejero.invalid/ruta"), "si");
    EXPECT_TRUE(proxy.requests().at(0).starts_with("POST http://callejero.invalid/ruta HTTP/1.1\r\n"))
        << proxy.requests().at(0);
}

TEST_F(Transport, AsksNoProxyForWhatTheEnvironmentExcepts) {
    setenv("http_proxy", "http://127.0.0.1:1", 1);
    setenv("no_proxy", "127.0.0.1", 1);
    EXPECT_EQ(answered(head + "Content-Length: 2\r\n\r\nsi"), "si");
}

TEST_F(Transport, PassesOnWhatTheCallersTurnRaises) {
    RawServer server({head + "Content-Length: 2\r\n\r\nsi"});
    EXPECT_THROW(
        static_cast<void>(ambrel::postSoap(server.url(), "a", "b", [] { throw std::logic_error("basta"); })),
        std::logic_error);
}

TEST_F(Transport, GivesTheCallerItsTurnAtLeastOnce) {
    RawServer server({head + "Content-Length: 2\r\n\r\nsi"});
    int turns = 0;
    EXPECT_EQ(ambrel::postSoap(server.url(), "a", "b", [&turns] { ++turns; }), "si");
    EXPECT_GE(turns, 1);
}

/// With the simulated service.
class DirectoryExchange : public Transport {
protected:
    static std::string ask(const std::string& operation, const std::string& request,
                           const std::function<void()>& whileWaiting = {}) {
        return ambrel::postSoap(ambrel::directoryUrl(), ambrel::soapAction(operation), utf8(request),
                                whileWaiting);
    }
    static std::string askStreets(const std::function<void()>& whileWaiting = {}) {
        return ask("ConsultaVia", ambrel::streetsRequest("LA RIOJA", "HARO"), whileWaiting);
    }

    static ambrel::StreetList streetsIn(const std::string& answer) {
        ambrel::DirectoryDocument document;
        document.load(answer);
        return ambrel::readStreets(document);
    }

    /// The list of Haro's streets under a fault.
    ambrel::StreetList streetsUnder(Fault fault) {
        directory->setFault(Operation::Streets, fault);
        return streetsIn(askStreets());
    }
    void expectRefusal(Fault fault) {
        directory->setFault(Operation::Streets, fault);
        EXPECT_THROW(askStreets(), TransportError);
        directory->setFault(Operation::Streets, Fault::None);
        EXPECT_EQ(streetsIn(askStreets()).streets.size(), 3u) << "the next exchange is a new one";
    }
    /// The fault holds the answer until the caller has had a few turns; then it arrives as a whole.
    void expectPatience(Fault fault) {
        directory->setFault(Operation::Streets, fault);
        int turns = 0;
        const std::string answer = askStreets([&] {
            if (++turns >= 5) {
                directory->release();
            }
        });
        EXPECT_GE(turns, 5);
        EXPECT_EQ(streetsIn(answer).streets.size(), 3u);
    }

    SimulatedDirectory directory;
};

TEST_F(DirectoryExchange, BringsTheThreeLists) {
    ambrel::DirectoryDocument document;
    document.load(ask("ConsultaProvincia", ambrel::provincesRequest()));
    EXPECT_EQ(ambrel::readProvinces(document).names,
              std::vector<std::string>({ansi("A CORUÑA"), "LA RIOJA"}));
    document.load(ask("ConsultaMunicipio", ambrel::municipalitiesRequest("LA RIOJA")));
    EXPECT_EQ(ambrel::readMunicipalities(document).names,
              std::vector<std::string>({"EL RASILLO/RASILLO", "HARO"}));
    const auto streets = streetsIn(ask("ConsultaVia", ambrel::streetsRequest(ansi("A CORUÑA"), "SADA")));
    EXPECT_EQ(streets.reading, Reading::Whole);
    EXPECT_EQ(streets.streets, std::vector<ambrel::ImportedStreet>({{.type = "CL", .name = ansi("PEÑA LA")},
                                                                    {.type = "AV", .name = "MAR, DO"}}));
    ASSERT_EQ(directory->requests().size(), 3u);
    EXPECT_EQ(directory->requests()[2].province, "A CORUÑA");
    EXPECT_EQ(directory->requests()[2].municipality, "SADA");
}

TEST_F(DirectoryExchange, IsRefusedWithoutAnAnswer) { expectRefusal(Fault::Refuse); }

TEST_F(DirectoryExchange, IsRefusedWithHalfABody) { expectRefusal(Fault::Cut); }

TEST_F(DirectoryExchange, IsRefusedWithHalfABodyInChunks) { expectRefusal(Fault::CutChunked); }

TEST_F(DirectoryExchange, IsRefusedWithStatus500) { expectRefusal(Fault::Status500); }

TEST_F(DirectoryExchange, IsRefusedWithARedirectionWithoutAddress) { expectRefusal(Fault::Redirection); }

TEST_F(DirectoryExchange, IsTheSameUnderADeclarationThatIsNotTrue) {
    EXPECT_EQ(streetsUnder(Fault::OtherCoding).streets.size(), 3u);
    EXPECT_EQ(streetsUnder(Fault::OtherCoding).reading, Reading::Whole);
}

TEST_F(DirectoryExchange, IsRefusedWithAFault) { expectRefusal(Fault::SoapFault); }

TEST_F(DirectoryExchange, IsRefusedOnceTheServiceHasEnded) {
    directory->stop();
    EXPECT_THROW(askStreets(), TransportError);
}

/// The bytes that the service could send show how much was received; the system's buffers hold a few MiB.
TEST_F(DirectoryExchange, RefusesAnAnnouncedHugeAnswerBeforeItComes) {
    expectRefusal(Fault::Huge);
    EXPECT_LT(directory->sentOfHuge(), ambrel::largestAnswer);
}

TEST_F(DirectoryExchange, RefusesAHugeAnswerInChunksWhenItPassesTheLargest) {
    expectRefusal(Fault::HugeChunked);
    EXPECT_GT(directory->sentOfHuge(), ambrel::largestAnswer / 2);
    EXPECT_LT(directory->sentOfHuge(), 4 * ambrel::largestAnswer);
}

TEST_F(DirectoryExchange, WaitsForAnAnswerWhileTheCallerHasItsTurns) { expectPatience(Fault::Stall); }

TEST_F(DirectoryExchange, WaitsForTheRestOfABody) { expectPatience(Fault::StallMidway); }

TEST_F(DirectoryExchange, FailsWhenTheServiceEndsMeanwhile) {
    directory->setFault(Operation::Streets, Fault::StallMidway);
    int turns = 0;
    EXPECT_THROW(askStreets([&] {
                     if (++turns == 3) {
                         directory->stop();
                     }
                 }),
                 TransportError);
}

TEST_F(DirectoryExchange, FailsWhenTheServiceEndsBeforeItAnswers) {
    directory->setFault(Operation::Streets, Fault::Stall);
    EXPECT_THROW(askStreets([&] {
                     if (directory->requests().size() == 1) {
                         directory->stop();
                     }
                 }),
                 TransportError);
}

TEST_F(DirectoryExchange, WithAFaultAndStatus200HasNothing) {
    const auto list = streetsUnder(Fault::SoapFaultOk);
    EXPECT_FALSE(list.count);
    EXPECT_TRUE(list.streets.empty());
}

TEST_F(DirectoryExchange, WithAnErrorOfTheServiceHasNothing) {
    const auto list = streetsUnder(Fault::ErrorAnswer);
    EXPECT_EQ(list.reading, Reading::Whole);
    EXPECT_FALSE(list.count);
    EXPECT_TRUE(list.streets.empty());
}

TEST_F(DirectoryExchange, WithTooManyCountedIsPartial) {
    const auto list = streetsUnder(Fault::MoreCounted);
    EXPECT_EQ(list.reading, Reading::Partial);
    EXPECT_EQ(list.count, 4);
    EXPECT_EQ(list.streets.size(), 3u);
}

TEST_F(DirectoryExchange, WithTooFewCountedStopsAtTheCount) {
    const auto list = streetsUnder(Fault::FewerCounted);
    EXPECT_EQ(list.reading, Reading::Whole);
    EXPECT_EQ(list.streets.size(), 2u);
}

TEST_F(DirectoryExchange, WithoutCountOrListHasNothing) {
    EXPECT_FALSE(streetsUnder(Fault::NoCount).count);
    const auto list = streetsUnder(Fault::NoEntries);
    EXPECT_EQ(list.count, 3);
    EXPECT_TRUE(list.streets.empty());
}

TEST_F(DirectoryExchange, WithACountThatIsNoNumberIsMalformed) {
    EXPECT_EQ(streetsUnder(Fault::BadCount).reading, Reading::NoRoot);
}

TEST_F(DirectoryExchange, WithAnEmptyBodyIsEmpty) {
    EXPECT_EQ(streetsUnder(Fault::EmptyBody).reading, Reading::Empty);
}

TEST_F(DirectoryExchange, WithGarbageIsNoDocument) {
    EXPECT_THROW(streetsUnder(Fault::Garbage), std::runtime_error);
}

TEST_F(DirectoryExchange, WithAPageForPeopleIsNoAnswer) {
    EXPECT_EQ(streetsUnder(Fault::HtmlPage).reading, Reading::NoRoot);
}

TEST_F(DirectoryExchange, WithANameThatIsNoXmlIsRefused) {
    EXPECT_THROW(ask("ConsultaVia", ambrel::streetsRequest("A & B", "X")), TransportError);
    EXPECT_EQ(directory->requests().at(0).province, "A & B") << "sent as it is";
}

} // namespace
