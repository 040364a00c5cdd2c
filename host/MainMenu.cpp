// The menus of the host's window.
#include "host/MainMenu.h"

#include <QAction>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>

#include "form/AddressBoxes.h"
#include "host/routines/Catalogue.h"
#include "host/routines/RoutineDialog.h"
#include "services/EventGuard.h"

namespace host {
namespace {

template<class Act>
void addEntry(QMenu& menu, QMainWindow& window, const QString& object, const QString& text, Act act) {
    auto* entry = new QAction(text, &window);
    entry->setObjectName(object);
    QObject::connect(entry, &QAction::triggered, &window, ambrel::guarded(act));
    menu.addAction(entry);
}

void addRoutines(QMenu& menu, QMainWindow& window, dbase::Dataset& record,
                 const std::vector<routines::Routine>& all) {
    for (const routines::Routine& routine : all) {
        addEntry(menu, window, routine.object, QStringLiteral("%1 (%2)…").arg(routine.title, routine.name),
                 [&window, &record, routine] { routines::RoutineDialog(routine, record, &window).exec(); });
    }
}

} // namespace

void addMenus(QMainWindow& window, ambrel::AddressBoxes& address, dbase::Dataset& record,
              const std::function<void()>& validateFile, const std::function<void()>& auditTables) {
    using Box = ambrel::AddressBoxes::Box;
    QMenu& listMenu = *window.menuBar()->addMenu(QMainWindow::tr("&Listas"));
    addEntry(listMenu, window, QStringLiteral("MIMunicipio"), QMainWindow::tr("&Municipio del cliente…"),
             [&address] { address.openList(Box::Municipality); });
    addEntry(listMenu, window, QStringLiteral("MIProvincia"), QMainWindow::tr("&Provincia del cliente…"),
             [&address] { address.openList(Box::Province); });
    addEntry(listMenu, window, QStringLiteral("MITipoVia"), QMainWindow::tr("&Tipo de vía del cliente…"),
             [&address] { address.openList(Box::StreetType); });
    addEntry(listMenu, window, QStringLiteral("MIVia"), QMainWindow::tr("&Vía del cliente…"),
             [&address] { address.openList(Box::Street); });
    addEntry(listMenu, window, QStringLiteral("MIFichaVia"), QMainWindow::tr("&Ficha de la vía…"),
             [&address] { address.openStreetCard(); });
    listMenu.addSeparator();
    addRoutines(listMenu, window, record, routines::municipalityLists());
    listMenu.addSeparator();
    addRoutines(listMenu, window, record, routines::otherLists());
    listMenu.addSeparator();
    addRoutines(listMenu, window, record, routines::streetLists());
    QMenu& utilityMenu = *window.menuBar()->addMenu(QMainWindow::tr("Utilidad&es"));
    addEntry(utilityMenu, window, QStringLiteral("MIValidarFichero"), QMainWindow::tr("&Validar un fichero…"),
             validateFile);
    addEntry(utilityMenu, window, QStringLiteral("MIRevisarTablas"), QMainWindow::tr("&Revisar las tablas…"),
             auditTables);
    utilityMenu.addSeparator();
    addRoutines(utilityMenu, window, record, routines::utilities());
}

} // namespace host
