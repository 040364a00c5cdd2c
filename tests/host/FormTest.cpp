// The host's window over small tables.
#include "host/FormTest.h"

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include "host/DataFolder.h"
#include "host/HostTable.h"
#include "services/Confamb.h"
#include "services/TagProperty.h"
#include "support/ShownWindow.h"
#include "support/Typing.h"

namespace host_tests {

using ambrel::test::ansi;

void clickIn(QDialog& dialog, const char* button) {
    QTest::mouseClick(&ambrel::test::child<QPushButton>(dialog, button), Qt::LeftButton);
}

ambrel::test::ModalScript::Step justClick(const char* button) {
    return [=](QDialog& dialog) { clickIn(dialog, button); };
}

ambrel::test::ModalScript::Step typeAndClick(const char* box, const QString& text, const char* button) {
    return [=](QDialog& dialog) {
        auto& edit = ambrel::test::child<QLineEdit>(dialog, box);
        edit.setFocus();
        edit.selectAll();
        QTest::keyClicks(&edit, text);
        clickIn(dialog, button);
    };
}

FormTest::FormTest() {
    addProvinces({{"026", "RIOJA, LA"}, {"028", "MADRID"}, {"033", "ASTURIAS"}, {"017", "GIRONA"}});
    addMunicipalities({{"17105", "17830", "MIERES", "S"},
                       {"26071", "26200", "HARO", "S"},
                       {"28079", "28001", "MADRID", "N", "0"},
                       {"28079", "28005", "MADRID", "N", "0"},
                       {"28079", "28009", "MADRID", "N", "0"},
                       {"28079", "28012", "MADRID", "N", "0"},
                       {"28079", "28013", "MADRID", "N", "0"},
                       {"28079", "28014", "MADRID", "N", "0"},
                       {"33037", "33600", "MIERES", "N"}});
    addStreets({{"28000001", "ALCALA", "CL", "28014", {1, 57}, {2, 56}},
                {"28000002", "ALCALA", "CL", "28009", {59, 9999}, {58, 9998}},
                {"28000003", "MAYOR", "CL", "28013"},
                {"28000004", "MAYOR", "PZ", "28012"},
                {"28000005", "CORTA", "CL", "28005", {1, 9}, {2, 8}},
                {"26000001", "VEGA", "CL", "26200", {1, 9999}, {2, 9998}, "26", "9"}});
    addStreetTypes({{"AV", "AVENIDA"}, {"CL", "CALLE"}, {"PZ", "PLAZA"}});
    Config.setDatabase(host::hostDatabase, folder.path());
    host::createHostTable(folder.path(), host::FirstRows::None);
}

FormTest::~FormTest() { close(); }

void FormTest::addCustomers(const std::vector<CustomerRow>& rows) {
    host::HostTable table(host::hostDatabase);
    table.data.open();
    for (const CustomerRow& row : rows) {
        table.data.append();
        table.name.setText(ansi(row.name));
        table.streetType.setText(ansi(row.streetType));
        table.street.setText(ansi(row.street));
        table.number.setText(ansi(row.number));
        table.postalCode.setText(ansi(row.postalCode));
        table.municipality.setText(ansi(row.municipality));
        table.province.setText(ansi(row.province));
        table.data.post();
    }
}

void FormTest::open() {
    window_ = std::make_unique<host::MainWindow>(host::hostDatabase);
    ambrel::test::showActive(*window_);
}

QLineEdit* FormTest::box(const char* name) const {
    return window_->findChild<QLineEdit*>(QLatin1String(name));
}

QString FormTest::text(const char* name) const { return box(name)->text(); }

int FormTest::tag(const char* name) const { return ambrel::tagOf(*box(name)); }

QString FormTest::label(const char* name) const {
    return window_->findChild<QLabel*>(QLatin1String(name))->text();
}

QString FormTest::status() const { return window_->findChild<QLabel*>(QStringLiteral("LMensaje"))->text(); }

/// After a dialog the test platform leaves no window active.
void FormTest::activate() {
    if (!QApplication::focusWidget()) {
        ambrel::test::showActive(*window_);
    }
}

void FormTest::enter(const char* name) {
    activate();
    box(name)->setFocus(Qt::TabFocusReason);
}

void FormTest::type(const QString& text) {
    activate();
    for (const QChar letter : text) { // each goes to the widget that has the focus by then
        ambrel::test::typeInto(*QApplication::focusWidget(), letter);
    }
}

void FormTest::press(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    activate();
    QTest::keyClick(QApplication::focusWidget(), key, modifiers);
}

void FormTest::fill(const char* name, const QString& text) {
    enter(name);
    box(name)->selectAll();
    press(Qt::Key_Delete);
    type(text);
    press(Qt::Key_Tab);
}

void FormTest::choose(const char* entry) { window_->findChild<QAction*>(QLatin1String(entry))->trigger(); }

void FormTest::expectMunicipalityQuestion(ambrel::test::ScriptedMessages& messages,
                                          ambrel::MessageAnswer answer) {
    messages.expect(QStringLiteral("¿Desea ver la lista de municipios actuales?"), QStringLiteral("ATENCIÓN"),
                    QStringLiteral("Atención"), answer);
}

void FormTest::click(const char* button) {
    QTest::mouseClick(window_->findChild<QPushButton*>(QLatin1String(button)), Qt::LeftButton);
}

std::string FormTest::stored(const std::string& customer, const char* column) const {
    host::HostTable table(host::hostDatabase);
    table.data.open();
    if (!table.data.seek({{"NOMBRE", ansi(customer)}}, dbase::SeekMode::Exact)) {
        return {};
    }
    return table.data.field(column).text();
}

} // namespace host_tests
