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
    Text{"QFileDialog", "Look in:", "Buscar en:"},
    Text{"QFileDialog", "File &name:", "&Nombre:"},
    Text{"QFileDialog", "Files of type:", "Tipo:"},
    Text{"QFileDialog", "Directory:", "Carpeta:"},
    Text{"QFileDialog", "&Open", "&Abrir"},
    Text{"QFileDialog", "&Save", "&Guardar"},
    Text{"QFileDialog", "Back", "Atrás"},
    Text{"QFileDialog", "Go back", "Volver a la carpeta anterior"},
    Text{"QFileDialog", "Forward", "Adelante"},
    Text{"QFileDialog", "Go forward", "Ir a la carpeta siguiente"},
    Text{"QFileDialog", "Parent Directory", "Carpeta superior"},
    Text{"QFileDialog", "Go to the parent directory", "Ir a la carpeta superior"},
    Text{"QFileDialog", "Create New Folder", "Crear una carpeta"},
    Text{"QFileDialog", "Create a New Folder", "Crea una carpeta nueva"},
    Text{"QFileDialog", "&New Folder", "Carpeta n&ueva"},
    Text{"QFileDialog", "New Folder", "Carpeta nueva"},
    Text{"QFileDialog", "List View", "Lista"},
    Text{"QFileDialog", "Change to list view mode", "Ver sólo los nombres"},
    Text{"QFileDialog", "Detail View", "Detalles"},
    Text{"QFileDialog", "Change to detail view mode", "Ver también el tamaño, el tipo y la fecha"},
    Text{"QFileDialog", "Sidebar", "Lugares"},
    Text{"QFileDialog", "List of places and bookmarks", "Lugares y marcadores"},
    Text{"QFileDialog", "Files", "Ficheros"},
    Text{"QFileDialog", "&Rename", "&Cambiar el nombre"},
    Text{"QFileDialog", "&Delete", "&Borrar"},
    Text{"QFileDialog", "Delete", "Borrar"},
    Text{"QFileDialog", "Show &hidden files", "Mostrar los ficheros &ocultos"},
    Text{"QFileDialog", "Recent Places", "Lugares recientes"},
    Text{"QFileDialog", "%1 already exists.\nDo you want to replace it?",
         "%1 ya existe.\n¿Desea sustituirlo?"},
    Text{"QFileDialog", "%1\nFile not found.\nPlease verify the correct file name was given.",
         "%1\nNo existe el fichero. Compruebe su nombre."},
    Text{"QFileDialog", "%1\nDirectory not found.\nPlease verify the correct directory name was given.",
         "%1\nNo existe la carpeta. Compruebe su nombre."},
    Text{"QFileDialog", "Are you sure you want to delete '%1'?", "¿Desea borrar «%1»?"},
    Text{"QFileDialog", "'%1' is write protected.\nDo you want to delete it anyway?",
         "«%1» está protegido contra escritura.\n¿Desea borrarlo igualmente?"},
    Text{"QFileDialog", "Could not delete directory.", "No se ha podido borrar la carpeta."},
    Text{"QFileSystemModel", "Name", "Nombre"},
    Text{"QFileSystemModel", "Size", "Tamaño"},
    Text{"QFileSystemModel", "Type", "Tipo"},
    Text{"QFileSystemModel", "Date Modified", "Fecha"},
    Text{"QFileSystemModel", "Computer", "Equipo"},
    Text{"QShortcut", "Shift", "Mayús"},
    Text{"QShortcut", "PgUp", "RePág"},
    Text{"QShortcut", "PgDown", "AvPág"},
    Text{"QShortcut", "Home", "Inicio"},
    Text{"QShortcut", "End", "Fin"},
    Text{"QShortcut", "Del", "Supr"},
    Text{"QShortcut", "Return", "Intro"},
    Text{"QShortcut", "Enter", "Intro"},
    Text{"QShortcut", "Space", "Espacio"},
    Text{"QPlatformTheme", "&Yes", "&Sí"},
    Text{"QPlatformTheme", "&No", "&No"},
    Text{"QPlatformTheme", "OK", "Aceptar"},
    Text{"QPlatformTheme", "Cancel", "Cancelar"},
    Text{"QPlatformTheme", "Open", "Abrir"},
    Text{"QPlatformTheme", "Save", "Guardar"},
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
