// The texts.
#include "monkey/Texts.h"

#include <array>

namespace monkey {
namespace {

constexpr std::array addresses{
    SampleAddress{"MADRID", "CL", "ALCALA", "45"},
    SampleAddress{"MADRID", "CL", "ALCALA", "201"},
    SampleAddress{"madrid", "", "goya", "88"},
    SampleAddress{"HARO", "CL", "VEGA", "12"},
    SampleAddress{"BARCELONA", "AV", "DIAGONAL", "442"},
    SampleAddress{"sevilla", "cl", "sierpes", "8"},
    SampleAddress{"BILBAO", "CL", "LICENCIADO POZA", "31"},
    SampleAddress{"VITORIA-GASTEIZ", "CL", "DATO", "14"},
    SampleAddress{"GIJON", "CL", "CORRIDA", "40"},
    SampleAddress{"VALENCIA", "CL", "COLON", "20"},
    SampleAddress{"ALCALA DE HENARES", "CL", "LIBREROS", "5 BIS"},
    SampleAddress{"MIERES", "CL", "VEGA DE ARRIBA", "10"},
    SampleAddress{"CORUÑA, A", "AV", "FINISTERRE", "S/N"},
    SampleAddress{"CALAHORRA", "CL", "MAYOR", "3"},
    SampleAddress{"aranjuez", "cl", "real", "1"},
};

} // namespace

int addressCount() { return static_cast<int>(addresses.size()); }

const SampleAddress& addressAt(int index) { return addresses.at(static_cast<std::size_t>(index)); }

const QStringList& texts() {
    static const QStringList all{
        QString(),
        QStringLiteral("madrid"),
        QStringLiteral("MIERES"),
        QStringLiteral("vitorai"),
        QStringLiteral("bareclona"),
        QStringLiteral("la coruña"),
        QStringLiteral("28014"),
        QStringLiteral("33600"),
        QStringLiteral("99999"),
        QStringLiteral("0"),
        QStringLiteral("-7"),
        QStringLiteral("12 BIS"),
        QStringLiteral("s/n"),
        QStringLiteral("Km 4,5"),
        QStringLiteral("CL"),
        QStringLiteral("avenida"),
        QStringLiteral("alcala"),
        QStringLiteral("c/ goya 88"),
        QStringLiteral("CALLE NUEVA DEL MONO"),
        QStringLiteral("mayor"),
        QStringLiteral("a"),
        QStringLiteral("ñ"),
        QStringLiteral("Calle de Alcalá 45, 3º izda., 28014 Madrid"),
        QStringLiteral("C/ Sierpes nº 8, 41001 Sevilla (Sevilla)"),
        QStringLiteral("Avda. Diagonal, 442 bajos\n08008 Barcelona\nEspaña"),
        QStringLiteral("Pza. de la Estrella Polar 7, Mieres"),
        QStringLiteral("  \t  dos   blancos \n\n"),
        QStringLiteral("\"comillas\"; 'y' <b>signos</b> & %1 %s {} \\"),
        QStringLiteral("ŁÓDŹ 東京 Ωμέγα \u202Ederecha"),
        QString::fromUtf8("e\xCC\x81\xF0\x9F\x90\x92\xE2\x80\x8D\xF0\x9F\x8F\xA0"),
        QStringLiteral("clientes.csv"),
        QStringLiteral("resultado.csv"),
        QStringLiteral("informe.html"),
        QStringLiteral("no/hay/tal.csv"),
        QString(300, QLatin1Char('W')),
        QStringLiteral("LARGA ").repeated(2000),
    };
    return all;
}

} // namespace monkey
