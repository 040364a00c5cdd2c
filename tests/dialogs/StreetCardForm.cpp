// The street card over a few streets.
#include "dialogs/StreetCardForm.h"

#include <QApplication>
#include <QTest>

#include "support/ModalScript.h"
#include "support/ShownWindow.h"
#include "support/Typing.h"

namespace postal_tests {

using ambrel::test::child;

StreetCardForm::StreetCardForm() {
    addMunicipalities({{"28079", "28013", "MADRID", "N", "0"},
                       {"28005", "28801", "ALCALA DE HENARES", "S"},
                       {"28006", "28100", "ALCOBENDAS"},
                       {"08019", "08001", "BARCELONA", "N", "0"},
                       {"15075", "15160", "SADA"},
                       {"31213", "31491", "SADA"}});
    addProvinces({{"028", "MADRID"},
                  {"008", "BARCELONA"},
                  {"015", "CORUÑA, A"},
                  {"031", "NAVARRA"},
                  {"201", "FRANCIA", 3}});
    addStreetTypes({{"PZ", "PLAZA"}, {"CL", "CALLE"}, {"AV", "AVENIDA"}});
    addStreets({{"99000000", "GRAN VIA", "CL", "28013", {1, 99}, {2, 98}},
                {"99000001", "SIN CODIGO", "PZ", "0"},
                {"99000002", "PERDIDA", "AV", "28999"},
                {.codigo1 = "99000003", .via = "BLANCA", .tipo = "", .codPostal = "", .provincia = ""},
                {"28000001", "ALCALA", "CL", "28013"}});
    controller = std::make_unique<TClassCodPostales>();
    chooseMunicipality("MADRID");
}

StreetCardForm::~StreetCardForm() {
    card.reset();
    controller.reset(); // before the tables are checked
}

void StreetCardForm::chooseMunicipality(const char* name) {
    controller->OrdenaPorNombreMunicipi();
    ASSERT_TRUE(controller->BuscaPorNombreMunicipi(QString::fromUtf8(name), true)) << name;
}

void StreetCardForm::openCard(TOperacion operation, const QString& vecindad, const std::string& street) {
    goToStreet(streets(), street);
    const QString codIne = QString::fromStdString(controller->DM->tbMunicipiCOD_INE.text());
    card = std::make_unique<TFFichaVia>(nullptr, *controller, operation, codIne, vecindad);
    ambrel::test::showActive(*card);
}

void StreetCardForm::fillIn() {
    edit("EVecindad").setText("MADRID");
    combo("CBProvincia").setEditText("MADRID [28]");
    combo("CBTipoVia").setEditText("CL - CALLE");
    edit("DBEVia").setText("NUEVA");
    edit("DBECodPostal").setText("28013");
}

QLineEdit& StreetCardForm::edit(const char* name) const { return child<QLineEdit>(*card, name); }

QComboBox& StreetCardForm::combo(const char* name) const { return child<QComboBox>(*card, name); }

QPushButton& StreetCardForm::button(const char* name) const { return child<QPushButton>(*card, name); }

std::string StreetCardForm::textOf(const char* name) const {
    if (const auto* found = card->findChild<QComboBox*>(QLatin1String(name))) {
        return found->currentText().toStdString();
    }
    return edit(name).text().toStdString();
}

void StreetCardForm::enter(const char* name) const { child<QWidget>(*card, name).setFocus(); }

void StreetCardForm::leaveByTab() const { press(Qt::Key_Tab); }

void StreetCardForm::typeInto(const char* name, const QString& text) const {
    enter(name);
    ambrel::test::typeInto(child<QWidget>(*card, name), text);
}

void StreetCardForm::press(Qt::Key key, Qt::KeyboardModifiers modifiers) const {
    QTest::keyClick(QApplication::focusWidget() ? QApplication::focusWidget() : card.get(), key, modifiers);
}

std::string StreetCardForm::focused() const {
    return card->focusWidget() ? card->focusWidget()->objectName().toStdString() : std::string();
}

std::string StreetCardForm::stored(const std::string& codigo1, const char* field) {
    dbase::Dataset table("DB", "POSTAL", "CODIGO1");
    table.open();
    return table.seek({{"CODIGO1", codigo1}}, dbase::SeekMode::Exact) ? table.field(field).text()
                                                                      : std::string();
}

void StreetCardForm::expectCancelQuestion(ambrel::MessageAnswer answer) {
    messages.expect("¿Desea cancelar esta operación (S/N)?", "Esta modificando los datos de una via",
                    "Atención", answer);
}

void StreetCardForm::expectDeleteQuestion(ambrel::MessageAnswer answer) {
    messages.expect("¿Seguro que desea borrar la via GRAN VIA de la base de datos?", "Eliminar Via",
                    "Atención", answer);
}

void StreetCardForm::expectClosed() const {
    EXPECT_TRUE(QTest::qWaitFor([this] { return !card->isVisible(); }));
}

void StreetCardForm::expectReadOnly() const {
    EXPECT_FALSE(child<QGroupBox>(*card, "GBIdentificacion").isEnabled());
    EXPECT_FALSE(child<QGroupBox>(*card, "GBNumeracion").isEnabled());
}

} // namespace postal_tests
