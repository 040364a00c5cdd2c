// Street types by abbreviation and by name.
#include <exception>
#include <functional>

#include "data/TableScope.h"
#include "data/ViasDM.h"
#include "dbase/system/trim.h"
#include "dialogs/TipoViasLista.h"
#include "dialogs/common/ModalDialog.h"
#include "lookup/ModuleScope.h"
#include "lookup/RutCodPostales.h"
#include "services/Mensaje.h"
#include "services/Ruttb.h"
#include "services/Text.h"

using ambrel::fromWindows1252;

namespace {

/// The street types for one lookup, open in the order of a tag.
class StreetTypes {
public:
    explicit StreetTypes(const char* tag) : open_(orderedBy(tag)) {}

    /// Goes to the type whose column, by which the tag orders, holds the value; trailing blanks are ignored.
    [[nodiscard]] bool find(const dbase::Field& column, const QString& value) {
        const auto typed = ambrel::toWindows1252(value);
        if (!typed) {
            return false;
        }
        const std::string text(dbase::withoutTrailingBlanks(*typed));
        // A key is cut to its column's width: a longer text would find a type that it merely begins with.
        return TBBusca(types().tbTipo_Via, {{column.name(), text}}, exactSearch) && column.text() == text;
    }

    [[nodiscard]] TDMVias& types() { return module_.module(); }

private:
    dbase::Dataset& orderedBy(const char* tag) {
        TBIndexa(tag, types().tbTipo_Via);
        return types().tbTipo_Via;
    }

    ambrel::ModuleScope<TDMVias> module_{DMVias};
    ambrel::TableScope open_;
};

/// Runs a lookup; a failure is shown to the user after everything is closed again.
void reportFailure(const std::function<void()>& lookUp) {
    try {
        lookUp();
    } catch (const std::exception&) {
        Mensaje_Error(QStringLiteral("No se puede buscar en la lista de vías"), QStringLiteral("Error"));
    }
}

bool wantsList(const QString& unknown) {
    const QString title = QStringLiteral("Atención");
    if (unknown.isEmpty()) {
        return Mensaje_SiNo(QStringLiteral("¿Desea buscar el tipo de vía en la relación alfabética (S/N)?"),
                            {}, title) == answeredYes;
    }
    return Mensaje_SiNo(QStringLiteral("¿Desea buscarlo en la relación alfabética (S/N)?"),
                        QStringLiteral("No se ha encontrado ningún tipo de vía con esta abreviatura"),
                        title) == answeredYes;
}

/// True if the user wants the list and chooses a type from it, which is then current.
bool isChosenFromList(const QString& unknown) {
    return wantsList(unknown) && ambrel::ModalDialog<TFTipoViasLista>(nullptr).isAccepted();
}

QString shortForm(const std::string& name) { return fromWindows1252(name.substr(0, name.find(','))); }

} // namespace

QString Tipo_Via(const QString& abbreviation, bool ask, bool catalan) {
    QString result;
    reportFailure([&] {
        const QString code = abbreviation.trimmed();
        StreetTypes lookup("CODIGO");
        const TDMVias& types = lookup.types();
        if (!code.isEmpty() && lookup.find(types.tbTipo_ViaCODIGO, code)) {
            result = shortForm((catalan ? types.tbTipo_ViaNOMBRE_CAT : types.tbTipo_ViaNOMBRE).text());
        } else if (ask && isChosenFromList(code)) {
            // Deliberate: a type chosen from the list is returned as its abbreviation, a type found as its
            // name.
            result = fromWindows1252(types.tbTipo_ViaCODIGO.text());
        }
    });
    return result;
}

QString Tipo_Via2(QString& name, const QString& abbreviation) {
    QString result;
    reportFailure([&] {
        const QString code = abbreviation.trimmed();
        StreetTypes lookup("CODIGO");
        const TDMVias& types = lookup.types();
        if (!code.isEmpty() && lookup.find(types.tbTipo_ViaCODIGO, code)) {
            // Deliberate: the result stays empty, so that callers know that no choice was needed.
            name = fromWindows1252(types.tbTipo_ViaNOMBRE.text());
        } else if (isChosenFromList(code)) {
            result = fromWindows1252(types.tbTipo_ViaCODIGO.text());
            name = fromWindows1252(types.tbTipo_ViaNOMBRE.text());
        }
    });
    return result;
}

QString Tipo_ViaPorNombre(const QString& name) {
    QString result;
    reportFailure([&] {
        const QString wanted = name.trimmed();
        StreetTypes lookup("NOMBRE");
        const TDMVias& types = lookup.types();
        if (!wanted.isEmpty() && lookup.find(types.tbTipo_ViaNOMBRE, wanted)) {
            result = fromWindows1252(types.tbTipo_ViaCODIGO.text());
        }
    });
    return result;
}

QString Nombre_Via(const QString& abbreviation) {
    StreetTypes lookup("CODIGO");
    const TDMVias& types = lookup.types();
    // Deliberate: the abbreviation is not trimmed; a leading blank makes it unknown.
    return lookup.find(types.tbTipo_ViaCODIGO, abbreviation) ? fromWindows1252(types.tbTipo_ViaNOMBRE.text())
                                                             : QString();
}
