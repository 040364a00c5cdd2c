// The transport alone, with a peer that answers with any bytes: what is sent, and that an answer arrives as a
// whole or not at all.
#include "import/Transport.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include <curl/curl.h>

#include "RawServer.h"
#include "WithoutProxies.h"
#include "dbase/dbf/codepage.h"
#include "import/Envelope.h"
#include "support/Tables.h"

namespace {

using ambrel::TransportError;
using ambrel::test::ansi;

const std::string head = "HTTP/1.1 200 OK\r\nContent-Type: text/xml\r\n";

std::string utf8(const std::string& text) { return dbase::CodePage::windows1252().toUtf8(text); }

class Transport : public import_tests::WithoutProxies {
protected:
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

} // namespace
