#include "host/FormTest.h"

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

namespace host_tests {

using ambrel::test::ansi;

FormTest::FormTest() {
    addProvinces({{"026", "RIOJA, LA"}, {"028", "MADRID"}, {"033", "ASTURIAS"}, {"017", "GIRONA"}});
    addMunicipalities({{"17105", "17830", "MIERES", "S"},
                       {"26071", "26200", "HARO", "S"},
                       {"28079", "28001", "MADRID", "N", "0"},
                       {"33037", "33600", "MIERES", "N"}});
    addStreets({{"28000001", "ALCALA", "CL", "28014", {1, 57}, {2, 56}},
                {"28000002", "ALCALA", "CL", "28009", {59, 9999}, {58, 9998}},
                {"28000003", "MAYOR", "CL", "28013"},
                {"28000004", "MAYOR", "PZ", "28012"},
                {"28000005", "CORTA", "CL", "28005", {1, 9}, {2, 8}},
                {"26000001", "VEGA", "CL", "26200", {1, 9999}, {2, 9998}, "26", "9"}});
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

QString FormTest::status() const { return window_->findChild<QLabel*>(QStringLiteral("LMensaje"))->text(); }

void FormTest::enter(const char* name) { box(name)->setFocus(Qt::TabFocusReason); }

void FormTest::type(const QString& text) {
    for (const QChar letter : text)
        QTest::sendKeyEvent(QTest::Click, QApplication::focusWidget(),
                            static_cast<Qt::Key>(letter.toUpper().unicode()), letter, Qt::NoModifier);
}

void FormTest::press(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    QTest::keyClick(QApplication::focusWidget(), key, modifiers);
}

void FormTest::fill(const char* name, const QString& text) {
    enter(name);
    box(name)->selectAll();
    press(Qt::Key_Delete);
    type(text);
    press(Qt::Key_Tab);
}

void FormTest::click(const char* button) {
    QTest::mouseClick(window_->findChild<QPushButton*>(QLatin1String(button)), Qt::LeftButton);
}

std::string FormTest::stored(const std::string& customer, const char* column) const {
    host::HostTable table(host::hostDatabase);
    table.data.open();
    if (!table.data.seek({{"NOMBRE", ansi(customer)}}, dbase::SeekMode::Exact))
        return {};
    return table.data.field(column).text();
}

} // namespace host_tests
