// A window with the six boxes of an address.
#include "form/BoxesTest.h"

#include <QApplication>
#include <QClipboard>
#include <QTest>
#include <QVBoxLayout>

#include "services/TagProperty.h"
#include "support/ShownWindow.h"
#include "support/Tables.h"
#include "support/Typing.h"

namespace postal_tests {

using ambrel::MessageAnswer;

BoxesTest::BoxesTest() {
    addProvinces({{"001", "ALAVA"},
                  {"002", "ALBACETE"},
                  {"008", "BARCELONA"},
                  {"017", "GIRONA"},
                  {"026", "RIOJA, LA"},
                  {"028", "MADRID"},
                  {"033", "ASTURIAS"}});
    addMunicipalities({{"01059", "01013", "VITORIA", "N", "0"},
                       {"02003", "02001", "ALBACETE", "N", "0"},
                       {"08019", "08019", "BARCELONA", "N", "0"},
                       {"17105", "17830", "MIERES", "S"},
                       {"26001", "26500", "ALTA"},
                       {"26001", "26501", "ALTA"},
                       {"26002", "26510", "BAJA", "S"},
                       {"26071", "26200", "HARO", "S"},
                       {"28013", "28300", "ARANJUEZ", "S"},
                       {"28079", "28001", "MADRID", "N", "0"},
                       {"28079", "28012", "MADRID", "N", "0"},
                       {"28079", "28013", "MADRID", "N", "0"},
                       {"28079", "28014", "MADRID", "N", "0"},
                       {"28079", "28027", "MADRID", "N", "0"},
                       {"33037", "33600", "MIERES"},
                       {"33037", "33610", "MIERES"}});
    addStreets({{"01000001", "ABETXUKO", "CL", "01013", {1, 9999}, {2, 9998}, "01"},
                {"08000001", "AGRICULTURA", "CL", "08019", {1, 9999}, {2, 9998}, "08"},
                {"26000001", "MAYOR", "CL", "26510", {1, 9999}, {2, 9998}, "26", "9"},
                {"26000002", "MAYOR", "CL", "26501", {1, 99}, {2, 98}, "26", "9"},
                {"26000003", "MAYOR", "CL", "26500", {101, 9999}, {100, 9998}, "26", "9"},
                {"00000001", "PRIMERA", "CL", "26500", {1, 9999}, {2, 9998}, "26", "9"},
                {"28000001", "ALCALA", "CL", "28014", {1, 199}, {2, 198}},
                {"28000002", "ALCALA", "CL", "28027", {201, 9999}, {200, 9998}},
                {"28000003", "MAYOR", "CL", "28013"},
                {"28000004", "MAYOR", "PZ", "28012"}});
    addStreetTypes({{"AV", "AVENIDA"}, {"CL", "CALLE"}, {"PZ", "PLAZA,PLAÇA"}});
    auto* column = new QVBoxLayout(&form);
    for (QLineEdit** edit : {&boxes.municipality, &boxes.province, &boxes.streetType, &boxes.street,
                             &boxes.number, &boxes.postalCode}) {
        *edit = new QLineEdit(&form);
        column->addWidget(*edit);
    }
    column->addWidget(elsewhere);
}

BoxesTest::~BoxesTest() { address.reset(); }

void BoxesTest::open() {
    address = std::make_unique<ambrel::AddressBoxes>(boxes);
    ambrel::test::showActive(form);
}

void BoxesTest::enter(Box which) {
    if (!QApplication::focusWidget()) { // after a dialog the test platform leaves no window active
        ambrel::test::showActive(form);
    }
    box(which).setFocus(Qt::TabFocusReason);
}

void BoxesTest::type(const QString& text) {
    for (const QChar letter : text) {
        ambrel::test::typeInto(*QApplication::focusWidget(), letter);
    }
}

void BoxesTest::press(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    if (!QApplication::focusWidget()) {
        ambrel::test::showActive(form);
    }
    QTest::keyClick(QApplication::focusWidget(), key, modifiers);
}

void BoxesTest::fill(Box which, const QString& text) {
    enter(which);
    box(which).selectAll();
    press(Qt::Key_Delete);
    type(text);
    press(Qt::Key_Tab);
}

void BoxesTest::paste(Box which, const QString& text) {
    enter(which);
    box(which).selectAll();
    QGuiApplication::clipboard()->setText(text);
    box(which).paste();
    press(Qt::Key_Tab);
}

void BoxesTest::fillAddress(const QString& municipality, const QString& type, const QString& street,
                            const QString& number) {
    fill(Box::Municipality, municipality);
    fill(Box::StreetType, type);
    fill(Box::Street, street);
    fill(Box::Number, number);
}

int BoxesTest::tag(Box which) const { return ambrel::tagOf(box(which)); }

void BoxesTest::storeCustomer(const std::string& municipality, const std::string& postalCode) {
    createTable(ambrel::test::defineTable("CLIENTES", {"VECINDAD C53", "CODPOSTAL C5"}),
                {{municipality, postalCode}});
}

void BoxesTest::expectMunicipalityQuestion(MessageAnswer answer) {
    messages.expect(QStringLiteral("¿Desea ver la lista de municipios actuales?"), QStringLiteral("ATENCIÓN"),
                    QStringLiteral("Atención"), answer);
}

void BoxesTest::expectInsertion(MessageAnswer answer) {
    messages.expect(QStringLiteral("¿Desea insertarla como una nueva via?"), QStringLiteral("ATENCIÓN"),
                    QStringLiteral("Atención"), answer);
}

void BoxesTest::expectStreetList(MessageAnswer answer) {
    messages.expect(QStringLiteral("¿Desea ver la lista de direcciones actuales?"),
                    QStringLiteral("ATENCIÓN"), QStringLiteral("Atención"), answer);
}

void BoxesTest::expectStreetDeclined() {
    expectInsertion(MessageAnswer::No);
    expectStreetList(MessageAnswer::No);
}

} // namespace postal_tests
