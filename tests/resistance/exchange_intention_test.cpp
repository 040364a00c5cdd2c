// The file that says which tables are exchanged: cut, damaged, forged, or left after its work was done.
#include "dbase/table/exchange_intention.h"

#include <array>
#include <cstdio>
#include <random>

#include "ExchangeRemains.h"
#include "dbase/support/StoredTable.h"
#include "dbase/system/checksum.h"
#include "dbase/system/error.h"
#include "dbase/table/exchange_completion.h"
#include "dbase/table/table_exchange.h"
#include "support/LongForm.h"
#include "support/Seed.h"

namespace {

using namespace dbase;
using namespace dbase::test;
using ambrel::test::longForm;
using ambrel::test::seedOfThisRun;
namespace fs = std::filesystem;

std::string withSum(const std::string& body) {
    std::array<char, 24> sum{};
    std::snprintf(sum.data(), sum.size(), "suma %016llx\n", static_cast<unsigned long long>(checksum(body)));
    return body + sum.data();
}

TEST_F(ExchangeRemains, AnIntentionThatIsCutOrDamagedCountsAsNone) {
    const Bytes whole = decided_.contents.at(decided_.names.at("/datos/INTENCION.AMI"));
    for (std::size_t at = 0; at < whole.size(); ++at) {
        Bytes flipped = whole;
        flipped[at] = static_cast<char>(flipped[at] ^ 1 << at % 8);
        EXPECT_FALSE(decodeIntention({flipped.data(), flipped.size()})) << at;
        EXPECT_FALSE(decodeIntention({whole.data(), at})) << at;
    }
    for (const std::size_t size : {std::size_t{0}, std::size_t{1}, whole.size() - 1}) {
        const TemporaryFolder disk;
        decided_.writeInto(disk.path());
        writeFile(disk / "INTENCION.AMI", std::span(whole).first(size));
        EXPECT_EQ(authorsIn(disk.path(), 0), authorsBefore);
        exchangeBy(3, disk.path());
        EXPECT_EQ(authorsIn(disk.path(), 0), (Authors{3, 3, 3}));
        EXPECT_FALSE(fs::exists(disk / "INTENCION.AMI"));
    }
    EXPECT_EQ(notices_, "");
}

TEST_F(ExchangeRemains, AnIntentionNamesNoFileOutsideItsFolder) {
    for (const std::string name : {"../FUERA.DBF", "/FUERA.DBF", "..", ".", "DOS\nLINEAS.DBF", ""}) {
        const Intention intention{2, {{name, "X.MDX", {}, {1, 1}, false, 1}}};
        EXPECT_FALSE(decodeIntention(encodeIntention(intention))) << name;
        const Intention index{2, {{"X.DBF", name, {}, {1, 1}, false, 1}}};
        EXPECT_FALSE(decodeIntention(encodeIntention(index))) << name;
    }
    const Intention right{2, {{"X.DBF", "X.MDX", {}, {1, 1}, false, 1}}};
    EXPECT_TRUE(decodeIntention(encodeIntention(right)));
}

/// With a right checksum, which whoever forges one can compute.
TEST_F(ExchangeRemains, AForgedIntentionLeavesEveryTableOfOneAuthorAndTouchesNoOtherFile) {
    const Bytes whole = decided_.contents.at(decided_.names.at("/datos/INTENCION.AMI"));
    const std::string_view text(whole.data(), whole.size());
    const std::string body(text.substr(0, text.rfind("suma ")));
    std::mt19937 random(seedOfThisRun());
    const auto any = [&](std::size_t below) { return static_cast<std::size_t>(random() % below); };
    int understood = 0;
    for (int trial = 0; trial < longForm(4000, 400000) && !HasFailure(); ++trial) {
        std::string forged = body;
        for (std::size_t changes = 1 + any(3); changes > 0; --changes) {
            const std::size_t at = any(forged.size()), line = forged.find('\n', any(forged.size())) + 1;
            switch (any(4)) {
            case 0:
                forged[at] = static_cast<char>(random());
                break;
            case 1:
                forged.erase(at, 1 + any(40));
                break;
            case 2:
                forged.insert(line, forged.substr(any(forged.size()), any(80)));
                break;
            default:
                forged[at] = "0123456789abcdef"[any(16)];
            }
        }
        forged = withSum(forged);
        if (!decodeIntention(forged) || ++understood % longForm(20, 100) != 0) {
            continue;
        }
        const TemporaryFolder disk;
        decided_.writeInto(disk.path());
        disk.write("AJENO.DBF", "somebody's own");
        disk.write("INTENCION.AMI", forged);
        try {
            static_cast<void>(authorsIn(disk.path(), any(3)));
        } catch (const Error& error) { // a name that is not a file's
            EXPECT_STRNE(error.what(), "");
        }
        EXPECT_EQ(readFile(disk / "AJENO.DBF").size(), 14U);
    }
    EXPECT_GT(understood, 100);
}

TEST_F(ExchangeRemains, AnIntentionWhoseWorkIsDoneHarmsNoTableReplacedSince) {
    stopDecided();
    const Bytes intention = readFile(path("INTENCION.AMI"));
    completeExchange(disk_.path());
    writeFile(path("INTENCION.AMI"), intention); // its removal was lost
    restore("CALLES");
    EXPECT_EQ(authorsIn(disk_.path(), 0), (Authors{7, 1, 1}));
    { const TableExchange next(exchangedFiles(disk_.path())); }
    expectAuthors({7, 1, 1});
}

} // namespace
