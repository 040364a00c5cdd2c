// The host as a program that a monkey uses: one station of the test.
#include <QApplication>
#include <QCommandLineParser>
#include <QSettings>
#include <cstdio>

#include "host/DataFolder.h"
#include "host/MainWindow.h"
#include "host/SpanishTexts.h"
#include "host/Style.h"
#include "monkey/Monkey.h"
#include "services/Confamb.h"

namespace {

/// The same as the host's own program does without the option for it.
void configure(const QString& folder, const QString& ini) {
    Config.setProvince(28, "MADRID", "MADRID");
    Config.setMunicipality(3, "MADRID");
    if (!ini.isEmpty()) {
        Config.loadIni(ini.toStdString());
    }
    host::chooseFolder(folder, {});
}

} // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    host::SpanishTexts::install();
    host::applyStyle(*qApp);
    QCommandLineParser parser;
    const QCommandLineOption folder("folder", "of the tables", "DIR"), ini("ini", "configuration", "FILE"),
        seconds("seconds", "how long", "N", "60"), seed("seed", "of what it does", "N", "1");
    parser.addOptions({folder, ini, seconds, seed});
    parser.process(application);
    configure(parser.value(folder), parser.value(ini));
    monkey::Monkey monkey({parser.value(folder).toStdString(),
                           std::chrono::seconds(parser.value(seconds).toInt()), parser.value(seed).toUInt()});
    do {
        host::MainWindow window(host::hostDatabase);
        window.show();
        window.activateWindow();
        monkey.use(window);
        QApplication::exec();
    } while (!monkey.isOver());
    std::fputs(qUtf8Printable(monkey.report()), stdout);
    return 0;
}
