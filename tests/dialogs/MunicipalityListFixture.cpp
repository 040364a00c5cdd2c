// The lists of municipalities on a small table.
#include "dialogs/MunicipalityListFixture.h"

#include <QTest>

#include "data/CodPostalesDM.h"
#include "dialogs/BuscarMunicipios.h"
#include "dialogs/MunicipiLista.h"
#include "dialogs/MunicipiListaMJ.h"
#include "services/Text.h"
#include "support/ModalScript.h"
#include "support/ShownWindow.h"

namespace postal_tests {

using ambrel::test::child;

MunicipalityListFixture::MunicipalityListFixture() {
    addMunicipalities({{"28079", "28001", "MADRID"},
                       {"28010", "28430", "ALPEDRETE"},
                       {.codIne = "28010", .codPostal = "28431", .nombre = "LOS NEGRALES", .entMenor = true},
                       {"15030", "15001", "CORUÑA, A"},
                       {"08019", "08001", "BARCELONA"},
                       {"28084", "28840", "MEJORADA DEL CAMPO"},
                       {"28079", "28002", "MADRID"},
                       {"30030", "30830", "ÑORA, LA"}});
    addProvinces({{"008", "BARCELONA"}, {"028", "MADRID"}});
    addAlternativeMunicipalities({{"028", "MADRID"}, {"008", "BARCELONA"}, {"028", "ÑORA, LA"}});
}

MunicipalityListFixture::~MunicipalityListFixture() {
    dialog.reset();
    DMMunicipi = nullptr;
}

void MunicipalityListFixture::make(MunicipalityDialog which, const std::string& tag) {
    which_ = which;
    if (which == MunicipalityDialog::Buscar) {
        controller = std::make_unique<TClassCodPostales>();
    } else {
        module = std::make_unique<TDMMunicipi>();
        DMMunicipi = module.get();
        table().open();
    }
    table().setTag(tag);
    table().first();
    dialog = makeDialog();
}

std::unique_ptr<QDialog> MunicipalityListFixture::makeDialog() {
    switch (which_) {
    case MunicipalityDialog::Lista:
        return std::make_unique<TFMunicipiLista>();
    case MunicipalityDialog::Buscar:
        return std::make_unique<TFBuscarMunicipios>(nullptr, *controller);
    default:
        return std::make_unique<TFMunicipiListaMJ>();
    }
}

void MunicipalityListFixture::open(MunicipalityDialog which, const std::string& tag) {
    make(which, tag);
    ambrel::test::showActive(*dialog);
}

dbase::Dataset& MunicipalityListFixture::table() {
    if (which_ == MunicipalityDialog::Buscar) {
        return controller->DM->tbMunicipi;
    }
    return which_ == MunicipalityDialog::Lista ? module->tbMunicipi : module->tbMunicipiMJ;
}

ambrel::DataGrid& MunicipalityListFixture::grid() const {
    return child<ambrel::DataGrid>(*dialog,
                                   which_ == MunicipalityDialog::ListaMJ ? "DBGMUNICIMJ" : "DBGMUNICIPI");
}

QLineEdit& MunicipalityListFixture::edit(const char* name) const { return child<QLineEdit>(*dialog, name); }

std::string MunicipalityListFixture::focused() const {
    const QWidget* widget = dialog->focusWidget();
    while (widget && (widget->objectName().isEmpty() || widget->objectName().startsWith("qt_"))) {
        widget = widget->parentWidget(); // from a part to its control
    }
    return widget ? widget->objectName().toStdString() : std::string();
}

std::string MunicipalityListFixture::help() const {
    return child<QStatusBar>(*dialog, "SBAyuda").currentMessage().toStdString();
}

std::string MunicipalityListFixture::current(const char* field) {
    return ambrel::fromWindows1252(table().field(field).text()).toStdString();
}

std::string MunicipalityListFixture::shown(int column) const {
    return grid().cellText(grid().currentRow(), column).toStdString();
}

void MunicipalityListFixture::press(Qt::Key key) const {
    QTest::keyPress(dialog->focusWidget(), key);
    QTest::keyRelease(dialog->focusWidget(), key);
}

void MunicipalityListFixture::hover(const QWidget& control) const {
    for (const QPoint outside : {QPoint(1, 1), QPoint(2, 2)}) { // two: the mouse may be on one of them
        QTest::mouseMove(dialog->windowHandle(), outside);
    }
    QTest::mouseMove(dialog->windowHandle(), control.mapTo(dialog.get(), control.rect().center()));
}

void MunicipalityListFixture::clickTitle(int column) const {
    QTest::mouseClick(&grid(), Qt::LeftButton, Qt::NoModifier, grid().titleRect(column).center());
}

void MunicipalityListFixture::doubleClickRow(int row) const {
    QTest::mouseDClick(&grid(), Qt::LeftButton, Qt::NoModifier, grid().cellRect(row, 2).center());
}

} // namespace postal_tests
