// Clicks in the import dialog that bring up a message because they leave the province.
#include <gtest/gtest.h>

#include <QTest>
#include <QWindow>

#include "import/ImportForm.h"

namespace {

using namespace postal_tests;
using ambrel::test::ModalScript;

/// Real message boxes. The service refuses the municipalities of a province, which leads to two boxes.
class ImportClicks : public ImportForm {
public:
    ImportClicks() { ambrel::setMessageShower({}); }

    /// Switches to a mode with its province chosen, and presses the mouse over a control.
    void leaveProvinceFor(const char* mode, QWidget& (ImportClicks::*target)() const) {
        show(mode);
        choose("CBProvincias", "MADRID");
        service->setFault(callejero::Operation::Municipalities, callejero::Fault::Refuse);
        ModalScript script;
        for (int box = 0; box < 2; ++box) {
            script.expect("QMessageBox", [&](QDialog& message) { answer(message, (this->*target)()); });
        }
        QWidget& control = (this->*target)();
        QTest::mousePress(dialog->windowHandle(), Qt::LeftButton, {}, placeOf(control));
        QCoreApplication::processEvents();
    }
    [[nodiscard]] QWidget& exitButton() const { return control<QPushButton>("BBCancelar"); }
    [[nodiscard]] QWidget& thirdMode() const { return control<QRadioButton>("RBTodosConUno"); }

private:
    QPoint placeOf(QWidget& control) const {
        return control.mapTo(dialog.get(), QPoint(control.height() / 2, control.height() / 2));
    }
    /// Releases the mouse button over the pressed control, then answers the box.
    void answer(QDialog& message, QWidget& control) const {
        QTest::mouseRelease(dialog->windowHandle(), Qt::LeftButton, {}, placeOf(control));
        QTest::keyClick(&message, Qt::Key_Return);
    }
};

TEST_F(ImportClicks, SalirActsAfterTheMessageOfTheProvinceThatIsLeft) {
    leaveProvinceFor("RBTodosConUno", &ImportClicks::exitButton);
    EXPECT_FALSE(dialog->isVisible());
}

TEST_F(ImportClicks, TheThirdOptionIsLetGoWhereTheFocusGoesToTheMunicipality) {
    leaveProvinceFor("RBUno", &ImportClicks::thirdMode);
    EXPECT_EQ(focused(), "CBMunicipios");
    EXPECT_FALSE(control<QRadioButton>("RBTodosConUno").isDown());
    EXPECT_TRUE(control<QRadioButton>("RBUno").isChecked());
}

} // namespace
