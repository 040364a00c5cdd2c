// The progress window and message boxes of the import.
#include "import/ImportMessages.h"

#include "services/Mensaje.h"

namespace ambrel {

ImportMessages::ImportMessages(QWidget* window) : window_(window) {}

void ImportMessages::open(const QString& text) {
    if (!Progreso) {
        Progreso = MuestraMensaje(text, window_);
    }
}

void ImportMessages::change(const QString& text) const { CambiaMensaje(text, Progreso); }

void ImportMessages::close() {
    CierraMensaje(Progreso);
    Progreso.clear();
}

void ImportMessages::info(const QString& text, const QString& title) const {
    Mensaje_Info(window_, text, title);
}

void ImportMessages::error(const QString& text, const QString& title) const {
    Mensaje_Error(window_, text, title);
}

QString missingDataTitle() { return QStringLiteral("Faltan datos"); }

void reportNothingFound(const ImportMessages& messages) {
    messages.info(QStringLiteral("No se ha podido importar ningún nombre de vía"),
                  QStringLiteral("Inténtelo de nuevo"));
}

} // namespace ambrel
