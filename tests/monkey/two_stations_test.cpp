// Monkeys at two stations use the host on one folder of tables.
#include <gtest/gtest.h>

#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <memory>

#include "host/HostTable.h"
#include "sample/Sample.h"
#include "support/LongForm.h"
#include "support/Seed.h"
#include "support/TableTest.h"

namespace {

constexpr int patience = 60'000; // milliseconds
constexpr int shortRun = 6;      // seconds

/// Seconds; the environment variable AMBREL_MONKEY_SECONDS sets another number.
int secondsOfThisRun() {
    const char* const given = std::getenv("AMBREL_MONKEY_SECONDS");
    return given != nullptr ? std::stoi(given) : ambrel::test::longForm(shortRun, 3600);
}

class TwoStations : public ambrel::test::TableTest {
protected:
    TwoStations() {
        ambrel::createSample(folder.path());
        host::createHostTable(folder.path(), host::FirstRows::Sample);
        directory_.start(QStringLiteral(CALLEJERO_PROGRAM), QStringList());
        const QByteArray address =
            directory_.waitForReadyRead(patience) ? directory_.readLine() : QByteArray();
        ini_ = folder.write("ambrel.ini", "[Callejero]\nServidor=" + address.trimmed().toStdString() + '\n');
    }
    ~TwoStations() override {
        directory_.terminate();
        directory_.waitForFinished();
    }

    /// A station has a folder of its own for its files, from which it cannot see those of the machine's user.
    [[nodiscard]] std::unique_ptr<QProcess> start(unsigned seed) const {
        const QString own = QString::fromStdString(folder / ("puesto" + std::to_string(seed)));
        std::filesystem::create_directory(own.toStdString());
        QFile::copy(QStringLiteral(CUSTOMER_FILE), own + QStringLiteral("/clientes.csv"));
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char* const name : {"HOME", "XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME"}) {
            environment.insert(QLatin1String(name), own);
        }
        environment.insert(QStringLiteral("no_proxy"), QStringLiteral("127.0.0.1"));
        environment.insert(QStringLiteral("QT_LOGGING_RULES"), QStringLiteral("default.warning=false"));
        if (!environment.contains(QStringLiteral("AMBREL_MONKEY_SCREEN"))) {
            environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        }
        environment.insert(QStringLiteral("ASAN_OPTIONS"), environment.value(QStringLiteral("ASAN_OPTIONS")) +
                                                               QStringLiteral(":handle_abort=1"));
        auto station = std::make_unique<QProcess>();
        station->setProcessEnvironment(environment);
        station->setWorkingDirectory(own);
        station->setProcessChannelMode(QProcess::ForwardedChannels);
        station->start(QStringLiteral(MONKEY_STATION),
                       {QStringLiteral("--folder"), QString::fromStdString(folder.path()),
                        QStringLiteral("--ini"), QString::fromStdString(ini_), QStringLiteral("--seed"),
                        QString::number(seed), QStringLiteral("--seconds"),
                        QString::number(secondsOfThisRun())});
        return station;
    }

private:
    QProcess directory_;
    std::string ini_;
};

/// The short form makes the same choices in every run: what other choices find is for the long one.
unsigned seedOfTheMonkeys() {
    return secondsOfThisRun() > shortRun || std::getenv("AMBREL_SEED") != nullptr
               ? ambrel::test::seedOfThisRun() % 1'000'000
               : 1;
}

TEST_F(TwoStations, ThatMonkeysUseShowNoWrongCodeAndEndWell) {
    const unsigned seed = seedOfTheMonkeys();
    const std::array stations{start(seed), start(seed + 1)};
    for (const auto& station : stations) {
        ASSERT_TRUE(station->waitForFinished(secondsOfThisRun() * 1000 + 3 * patience));
        EXPECT_EQ(station->exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(station->exitCode(), 0);
    }
}

} // namespace
