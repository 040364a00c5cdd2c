// Exchanges with the simulated service: each list arrives as a whole, or the exchange is refused.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "SimulatedDirectory.h"
#include "WithoutProxies.h"
#include "dbase/dbf/codepage.h"
#include "import/Document.h"
#include "import/Envelope.h"
#include "import/ResponseReaders.h"
#include "import/Transport.h"
#include "support/Tables.h"

namespace {

using ambrel::Reading;
using ambrel::TransportError;
using ambrel::test::ansi;
using callejero::Fault;
using callejero::Operation;
using import_tests::WithoutProxies;

std::string utf8(const std::string& text) { return dbase::CodePage::windows1252().toUtf8(text); }

class DirectoryExchange : public WithoutProxies {
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
