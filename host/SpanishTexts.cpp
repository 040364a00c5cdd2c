// Spanish translations of Qt's own texts.
#include "host/SpanishTexts.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <array>
#include <string_view>

namespace host {
namespace {

struct Text {
    std::string_view context, source;
    const char* spanish;
};

constexpr std::array texts{
    Text{"QCommandLineParser", "Usage: %1", "Uso: %1"},
    Text{"QCommandLineParser", "Options:", "Opciones:"},
    Text{"QCommandLineParser", "[options]", "[opciones]"},
    Text{"QCommandLineParser", "Unknown option '%1'.", "No se conoce la opción «%1»."},
    Text{"QCommandLineParser", "Unknown options: %1.", "No se conocen las opciones: %1."},
    Text{"QCommandLineParser", "Missing value after '%1'.", "Falta el valor detrás de «%1»."},
    Text{"QCommandLineParser", "Unexpected value after '%1'.", "Sobra el valor detrás de «%1»."},
};

} // namespace

void SpanishTexts::install() {
    QLocale::setDefault(QLocale(QLocale::Spanish, QLocale::Spain));
    auto* installed = new QTranslator(qApp);
    if (installed->load(QStringLiteral("qtbase_es"), QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        QCoreApplication::installTranslator(installed);
    }
    QCoreApplication::installTranslator(new SpanishTexts(qApp));
}

QString SpanishTexts::translate(const char* context, const char* sourceText, const char*, int) const {
    for (const Text& text : texts) {
        if (text.context == context && text.source == sourceText) {
            return QString::fromUtf8(text.spanish);
        }
    }
    return {};
}

} // namespace host
