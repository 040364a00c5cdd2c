// TFBuscarDireccionPostal: its keys, the street card that they open, focus and hints.
#include <gtest/gtest.h>

#include <QGroupBox>
#include <QTest>

#include "dialogs/AddressSearchForm.h"
#include "services/KeyMap.h"
#include "services/TagProperty.h"
#include "support/ScriptedMessages.h"

namespace {

using namespace postal_tests;
using ambrel::MessageAnswer;
using ambrel::test::child;
using ambrel::test::ModalScript;
using ambrel::test::ScriptedMessages;

class AddressSearchKeys : public AddressSearchForm {
protected:
    void SetUp() override {
        show();
        goToStreet("99000000");
    }

    /// Presses a key with the grid in focus, or in the box, and expects the card to open as given.
    void expectCard(Qt::Key key, Qt::KeyboardModifiers modifiers, const char* acceptCaption, bool editable) {
        ModalScript script;
        script.expect("TFFichaVia", [&](QDialog& card) {
            EXPECT_EQ(child<QPushButton>(card, "BBAceptar").text().toStdString(), acceptCaption);
            EXPECT_EQ(child<QGroupBox>(card, "GBIdentificacion").isEnabled(), editable);
            leave(card, editable);
        });
        press(key, modifiers);
        EXPECT_TRUE(script.isDone()) << "no card came";
    }

    static void leave(QDialog& card, bool editing) {
        ScriptedMessages messages;
        if (editing) {
            messages.expect("¿Desea cancelar esta operación (S/N)?", "Esta modificando los datos de una via",
                            "Atención", MessageAnswer::Yes);
        }
        QTest::keyClick(card.focusWidget() ? card.focusWidget() : &card, Qt::Key_Escape);
    }

    [[nodiscard]] std::string cardStreet(QDialog& card) {
        return child<QLineEdit>(card, "DBEVia").text().toStdString();
    }
};

TEST_F(AddressSearchKeys, EnterMovesTheFocusOnAndNeverAccepts) {
    box().setFocus();
    const std::vector<const char*> order{"EVia",        "CBProvincia", "BBActualizarCOD_INE", "DBGPostal",
                                         "BBModificar", "BBAnadir",    "BBEliminar",          "BBDetalles",
                                         "BBImportar",  "BBAceptar",   "BBCancelar",          "EVia"};
    for (const char* name : order) {
        QWidget* focused = dialog->focusWidget();
        while (focused && focused->objectName() != name) {
            focused = focused->parentWidget();
        }
        EXPECT_TRUE(focused) << name << " should have the focus, not "
                             << dialog->focusWidget()->objectName().toStdString();
        press(Qt::Key_Return);
    }
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(ambrel::tagOf(*dialog), 0);
}

TEST_F(AddressSearchKeys, UpAndDownMoveOneRowAndPageKeysToTheEnds) {
    box().setFocus();
    press(Qt::Key_PageUp);
    EXPECT_EQ(street(), "BALMES");
    press(Qt::Key_Up);
    EXPECT_EQ(street(), "BALMES") << "at the first row";
    press(Qt::Key_Down);
    EXPECT_EQ(street(), "DIAGONAL");
    EXPECT_EQ(grid().cellText(grid().currentRow(), 1).toStdString(), "DIAGONAL");
    press(Qt::Key_PageDown);
    EXPECT_EQ(street(), "PERDIDA");
    press(Qt::Key_Down);
    EXPECT_EQ(street(), "PERDIDA") << "at the last row";
    press(Qt::Key_Up);
    EXPECT_EQ(street(), "OTRO LUGAR");
    EXPECT_EQ(box().text().toStdString(), "");
}

TEST_F(AddressSearchKeys, DeleteAndSpaceWhileTypingBelongToTheText) {
    box().setFocus();
    box().setText("LA");
    press(Qt::Key_Space);
    EXPECT_EQ(box().text().toStdString(), "LA ");
    press(Qt::Key_Home);
    press(Qt::Key_Delete);
    EXPECT_EQ(box().text().toStdString(), "A ");
    EXPECT_EQ(street(), "PERDIDA");
}

TEST_F(AddressSearchKeys, DeleteOutsideTheBoxOpensTheCardToDelete) {
    grid().setFocus();
    expectCard(Qt::Key_Delete, {}, "&Borrar", false);
    provinces().setFocus();
    expectCard(Qt::Key_Delete, {}, "&Borrar", false);
}

TEST_F(AddressSearchKeys, SpaceOutsideTheBoxOpensTheCardToView) {
    grid().setFocus();
    expectCard(Qt::Key_Space, {}, "&Aceptar", false);
    button("BBAceptar").setFocus();
    expectCard(Qt::Key_Space, {}, "&Aceptar", false);
    EXPECT_TRUE(dialog->isVisible()) << "Space does not press the button that has the focus";
}

TEST_F(AddressSearchKeys, InsertOpensTheCardToAddAlsoWhileTyping) {
    for (QWidget* const focused : {static_cast<QWidget*>(&box()), static_cast<QWidget*>(&grid())}) {
        focused->setFocus();
        expectCard(Qt::Key_Insert, {}, "&Aceptar", true);
    }
    expectCard(Qt::Key_Insert, Qt::KeypadModifier, "&Aceptar", true);
}

TEST_F(AddressSearchKeys, InsertWithExactlyShiftOpensTheCardToModify) {
    box().setFocus();
    ModalScript script;
    script.expect("TFFichaVia", [this](QDialog& card) {
        EXPECT_EQ(cardStreet(card), "PERDIDA");
        EXPECT_EQ(tables().tbPostal.state(), dbase::DatasetState::Edit);
        leave(card, true);
    });
    press(Qt::Key_Insert, Qt::ShiftModifier);
    EXPECT_TRUE(script.isDone());
}

TEST_F(AddressSearchKeys, InsertWithShiftAndAnotherKeyOpensTheCardToAdd) {
    ModalScript script;
    script.expect("TFFichaVia", [this](QDialog& card) {
        EXPECT_EQ(tables().tbPostal.state(), dbase::DatasetState::Insert);
        leave(card, true);
    });
    press(Qt::Key_Insert, Qt::ShiftModifier | Qt::ControlModifier);
    EXPECT_TRUE(script.isDone());
}

TEST_F(AddressSearchKeys, KeysWorkAlsoWhileTheirButtonsAreDisabled) {
    goToStreet("28000001");
    ASSERT_FALSE(button("BBModificar").isEnabled());
    grid().setFocus();
    expectCard(Qt::Key_Delete, {}, "&Borrar", false);

    ScriptedMessages messages;
    messages.expect("No puede modificar los datos de esta via", "Via no modificable.");
    ModalScript script;
    script.expect("TFFichaVia", [](QDialog& card) {
        QTest::mouseClick(&child<QPushButton>(card, "BBCancelar"), Qt::LeftButton);
    });
    press(Qt::Key_Insert, Qt::ShiftModifier);
    EXPECT_TRUE(script.isDone());
}

TEST_F(AddressSearchKeys, ButtonsOpenTheCardForTheirOperation) {
    struct Expected {
        const char* button;
        dbase::DatasetState state;
        const char* acceptCaption;
    };
    for (const Expected& expected : {Expected{"BBAnadir", dbase::DatasetState::Insert, "&Aceptar"},
                                     Expected{"BBModificar", dbase::DatasetState::Edit, "&Aceptar"},
                                     Expected{"BBEliminar", dbase::DatasetState::Browse, "&Borrar"},
                                     Expected{"BBDetalles", dbase::DatasetState::Browse, "&Aceptar"}}) {
        SCOPED_TRACE(expected.button);
        goToStreet("99000000");
        ModalScript script;
        script.expect("TFFichaVia", [&](QDialog& card) {
            EXPECT_EQ(tables().tbPostal.state(), expected.state);
            EXPECT_EQ(child<QPushButton>(card, "BBAceptar").text().toStdString(), expected.acceptCaption);
            leave(card, expected.state != dbase::DatasetState::Browse);
        });
        QTest::mouseClick(&button(expected.button), Qt::LeftButton);
        EXPECT_TRUE(script.isDone());
    }
}

TEST_F(AddressSearchKeys, DeletedStreetLeavesTheList) {
    grid().setFocus();
    ScriptedMessages messages;
    messages.expect("¿Seguro que desea borrar la via PERDIDA de la base de datos?", "Eliminar Via",
                    "Atención", MessageAnswer::Yes);
    ModalScript script;
    script.expect("TFFichaVia", [](QDialog& card) {
        QTest::mouseClick(&child<QPushButton>(card, "BBAceptar"), Qt::LeftButton);
    });
    press(Qt::Key_Delete);
    EXPECT_EQ(grid().cellText(grid().currentRow(), 1).toStdString(), "OTRO LUGAR");
    EXPECT_FALSE(button("BBEliminar").isEnabled());
}

TEST_F(AddressSearchKeys, AltKeysPressTheirButtons) {
    QTest::keyClick(&box(), Qt::Key_A, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([this] { return !dialog->isVisible(); }));
    EXPECT_EQ(ambrel::tagOf(*dialog), 1);
}

TEST_F(AddressSearchKeys, HintOfWhatHasTheFocusOrTheMouseIsInTheStatusBar) {
    for (const char* name : {"EVia", "CBProvincia", "BBActualizarCOD_INE", "BBModificar", "BBAnadir",
                             "BBEliminar", "BBDetalles", "BBImportar", "BBAceptar", "BBCancelar"}) {
        control<QWidget>(name).setFocus();
        EXPECT_EQ(help(), control<QWidget>(name).toolTip().toStdString()) << name;
        EXPECT_NE(help(), "") << name;
    }
    grid().setFocus();
    EXPECT_EQ(help(), "");
    QEvent enter(QEvent::Enter), left(QEvent::Leave);
    QApplication::sendEvent(&button("BBDetalles"), &enter);
    EXPECT_EQ(help(), "Ver la ficha de la vía seleccionada");
    QApplication::sendEvent(&button("BBDetalles"), &left);
    EXPECT_EQ(help(), "");
}

TEST_F(AddressSearchKeys, EditControlsAreColouredWhileTheyHaveTheFocus) {
    for (const char* name : {"EVia", "CBProvincia"}) {
        QWidget& edit = control<QWidget>(name);
        grid().setFocus();
        const QPalette normal = edit.palette();
        edit.setFocus();
        EXPECT_NE(edit.palette(), normal) << name;
        grid().setFocus();
        EXPECT_EQ(edit.palette(), normal) << name;
    }
}

} // namespace
