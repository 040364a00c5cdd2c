// The import without a mouse.
#include <gtest/gtest.h>

#include <QAction>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QDialog>
#include <QMenu>
#include <QRadioButton>
#include <QTest>

#include "accessibility/Forms.h"
#include "import/StreetGrid.h"
#include "support/ModalScript.h"
#include "support/ScriptedMessages.h"

namespace accessibility_tests {
namespace {

using ambrel::test::child;

class KeyboardImport : public Forms {
protected:
    static void choose(QWidget& window, const char* item) {
        const auto& combo = dynamic_cast<const QComboBox&>(*window.focusWidget());
        const int wanted = combo.findText(QString::fromUtf8(item));
        ASSERT_GE(wanted, 0) << item;
        while (combo.currentIndex() != wanted) {
            press(window, combo.currentIndex() < wanted ? Qt::Key_Down : Qt::Key_Up);
        }
    }
    static void goTo(QWidget& window, const char* control) {
        for (int step = 0; step < 20 && focused(window) != control; ++step) {
            press(window, Qt::Key_Tab);
        }
        ASSERT_EQ(focused(window), control);
    }
    static std::string row(const QWidget& window, int row) {
        const auto& streets = child<ambrel::StreetGrid>(window, "SGVias").streets();
        return streets.at(static_cast<std::size_t>(row)).name;
    }
    ambrel::test::ScriptedMessages messages;
};

TEST_F(KeyboardImport, AFileIsReadLookedThroughAndSaved) {
    show(Form::ImportarFichero, [this](QWidget& window) {
        goTo(window, "CBProvincias");
        choose(window, "28-MADRID");
        press(window, Qt::Key_Tab);
        ASSERT_EQ(focused(window), "BBBuscarViasPorMunicipio");
        press(window, Qt::Key_Space);
        const auto& grid = child<ambrel::StreetGrid>(window, "SGVias");
        ASSERT_EQ(grid.streets().size(), 2U);

        press(window, Qt::Key_F6);
        ASSERT_EQ(focused(window), "SGVias");
        EXPECT_EQ(grid.currentIndex().row(), 1);
        press(window, Qt::Key_Up);
        EXPECT_EQ(grid.currentIndex().row(), 0);
        press(window, Qt::Key_Return);
        ASSERT_EQ(focused(window), "CBProvinciasAmbrel");
        goTo(window, "CBMunicipiosAmbrel"); // emptied by leaving the province
        choose(window, "MADRID");
        messages.expect(QStringLiteral("Se han importado 2 calles al módulo de Códigos Postales"),
                        QStringLiteral("Importación finalizada"));
        press(window, Qt::Key_G, Qt::AltModifier);
        press(window, Qt::Key_Escape);
        EXPECT_FALSE(window.isVisible());
    });
}

TEST_F(KeyboardImport, ARowMovesWithCtrlAndAnArrow) {
    show(Form::ImportarFichero, [](QWidget& window) {
        goTo(window, "CBProvincias");
        choose(window, "28-MADRID");
        press(window, Qt::Key_Tab);
        press(window, Qt::Key_Space);
        press(window, Qt::Key_F6);
        const std::string first = row(window, 0), second = row(window, 1);
        press(window, Qt::Key_Up, Qt::ControlModifier);
        EXPECT_EQ(row(window, 0), second);
        EXPECT_EQ(child<ambrel::StreetGrid>(window, "SGVias").currentIndex().row(), 0);
        press(window, Qt::Key_Up, Qt::ControlModifier); // there is none above
        EXPECT_EQ(row(window, 0), second);
        press(window, Qt::Key_Down, Qt::ControlModifier);
        EXPECT_EQ(row(window, 0), first);
        press(window, Qt::Key_Down, Qt::ControlModifier); // nor below
        EXPECT_EQ(row(window, 1), second);
    });
}

TEST_F(KeyboardImport, ArrowsChooseTheModeAndTheServiceIsAsked) {
    show(Form::ImportarFichero, [](QWidget& window) {
        ASSERT_EQ(focused(window), "RBMasDeUno");
        press(window, Qt::Key_Down);
        ASSERT_TRUE(QTest::qWaitFor([&] { return child<QComboBox>(window, "CBMunicipios").isVisible(); }));
        ASSERT_EQ(focused(window), "CBProvincias");
        choose(window, "MADRID");
        press(window, Qt::Key_Tab);
        ASSERT_EQ(focused(window), "CBMunicipios");
        choose(window, "ALPEDRETE");
        press(window, Qt::Key_Tab);
        press(window, Qt::Key_Space);
        EXPECT_EQ(row(window, 0), "ALPISTE");
    });
}

/// The menu key; its event comes from the desktop.
TEST_F(KeyboardImport, TheMenuOfAButtonIsOpenedByTheMenuKey) {
    show(Form::ImportarProvincia, [](QWidget& window) {
        ASSERT_EQ(focused(window), "CBProvincias");
        choose(window, "MADRID");
        goTo(window, "BBGuardarPorProvincia");
        QWidget& button = *window.focusWidget();
        QContextMenuEvent event(QContextMenuEvent::Keyboard, button.rect().center(),
                                button.mapToGlobal(button.rect().center()));
        QCoreApplication::sendEvent(&button, &event);
        auto& menu = child<QMenu>(window, "PMGuardarPorProvincia");
        ASSERT_TRUE(menu.isVisible());
        QTest::keyClick(&menu, Qt::Key_Down);
        EXPECT_EQ(menu.activeAction(), &child<QAction>(window, "MIGuardarPorProvincia"));
        QTest::keyClick(&menu, Qt::Key_Escape);
        EXPECT_FALSE(menu.isVisible());
        EXPECT_TRUE(window.isVisible());
    });
}

} // namespace
} // namespace accessibility_tests
