// The mouse in every form: the wheel over combos, and the menus of edit boxes.
#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QLineEdit>
#include <QMenu>
#include <QWheelEvent>

#include "accessibility/Forms.h"

namespace accessibility_tests {
namespace {

class Combos : public Forms, public ::testing::WithParamInterface<Form> {};
class EditMenus : public Forms, public ::testing::WithParamInterface<Form> {};

INSTANTIATE_TEST_SUITE_P(Form, Combos,
                         ::testing::Values(Form::BuscarDireccionPostal, Form::FichaViaNueva,
                                           Form::ImportarFichero, Form::ImportarMunicipio,
                                           Form::ImportarProvincia),
                         [](const auto& form) { return nameOf(form.param); });
INSTANTIATE_TEST_SUITE_P(Form, EditMenus, ::testing::ValuesIn(allForms()),
                         [](const auto& form) { return nameOf(form.param); });

void turnWheel(QWidget& control) {
    constexpr QPoint notchDown(0, -120);
    const QPointF place = control.rect().center();
    QWheelEvent wheel(place, control.mapToGlobal(place), {}, notchDown, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(&control, &wheel);
}

TEST_P(Combos, AreChangedByTheWheelOnlyWhenTheyHaveTheFocus) {
    show(GetParam(), [](QWidget& window) {
        for (QComboBox* const combo : window.findChildren<QComboBox*>()) {
            SCOPED_TRACE(combo->objectName().toStdString());
            if (!combo->isVisible() || !combo->isEnabled() || combo->count() < 2) {
                continue;
            }
            combo->setCurrentIndex(0);
            combo->clearFocus();
            turnWheel(*combo);
            EXPECT_EQ(combo->currentIndex(), 0);
            EXPECT_NE(combo->focusPolicy(), Qt::WheelFocus) << "the wheel would bring the focus";
            combo->setFocus();
            if (!combo->hasFocus()) {
                continue; // leaving the previous control has sent the focus elsewhere
            }
            const int before = combo->currentIndex(); // leaving the previous control may have changed it
            turnWheel(*combo);
            EXPECT_EQ(combo->currentIndex(), before + 1);
        }
    });
}

/// The texts of the menu that a right click brings up.
QStringList menuOf(QLineEdit& edit) {
    const QPoint place = edit.rect().center();
    QContextMenuEvent event(QContextMenuEvent::Mouse, place, edit.mapToGlobal(place));
    QApplication::sendEvent(&edit, &event);
    auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    QStringList texts;
    if (menu) {
        for (const QAction* const action : menu->actions()) {
            if (!action->isSeparator()) {
                texts << action->text().section('\t', 0, 0);
            }
        }
        menu->close();
    }
    return texts;
}

TEST_P(EditMenus, AreSpanish) {
    const QStringList spanish{"&Deshacer", "&Rehacer", "Cor&tar",         "&Copiar",
                              "&Pegar",    "Eliminar", "Seleccionar todo"};
    show(GetParam(), [&](QWidget& window) {
        for (QLineEdit* const edit : window.findChildren<QLineEdit*>()) {
            if (!edit->isVisible() || !edit->isEnabled() || edit->isReadOnly() ||
                edit->contextMenuPolicy() != Qt::DefaultContextMenu) { // a spin box has its own menu
                continue;
            }
            EXPECT_EQ(menuOf(*edit), spanish) << edit->objectName().toStdString() << " of "
                                              << edit->parentWidget()->objectName().toStdString();
        }
    });
}

} // namespace
} // namespace accessibility_tests
