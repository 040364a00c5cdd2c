// Copying the address as it is printed.
#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QTest>

#include "host/FormTest.h"

namespace {

using host_tests::FormTest;

class PreviewCopy : public FormTest {
protected:
    PreviewCopy() {
        addCustomers(
            {{"Ana", "CL", "ALCALA", "60", "28009", "MADRID", "MADRID"}, {"Berta", "", "", "", "", "", ""}});
        open();
        QGuiApplication::clipboard()->setText("antes");
    }
    [[nodiscard]] QLabel& line() { return *window().findChild<QLabel*>("LDomicilio"); }
    [[nodiscard]] static QString clipboard() { return QGuiApplication::clipboard()->text(); }
    static QMenu& menuOf(QLabel& label) {
        QContextMenuEvent event(QContextMenuEvent::Keyboard, {}, label.mapToGlobal(QPoint(5, 5)));
        QApplication::sendEvent(&label, &event);
        return *qobject_cast<QMenu*>(QApplication::activePopupWidget());
    }
};

TEST_F(PreviewCopy, TheButtonCopiesTheWholeLine) {
    ASSERT_FALSE(line().text().isEmpty());
    click("BBCopiar");
    EXPECT_EQ(clipboard(), line().text());
    EXPECT_EQ(status(), QStringLiteral("Dirección copiada."));
}

TEST_F(PreviewCopy, TheLineIsReachedWithTabAndCopiedWithItsKey) {
    enter("ECodPostal");
    press(Qt::Key_Tab);
    ASSERT_EQ(QApplication::focusWidget(), &line());
    EXPECT_EQ(line().selectedText(), line().text()) << "shows where the keyboard is";
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(clipboard(), line().text());
    press(Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget()->objectName(), "BBCopiar");
    EXPECT_FALSE(line().hasSelectedText());
    QGuiApplication::clipboard()->setText("antes");
    press(Qt::Key_Space);
    EXPECT_EQ(clipboard(), line().text());
}

TEST_F(PreviewCopy, AShortcutCopiesFromAnyBox) {
    enter("ENombre");
    press(Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(clipboard(), line().text());
}

TEST_F(PreviewCopy, APartThatTheUserHasSelectedIsCopiedAlone) {
    line().setFocus(Qt::MouseFocusReason);
    line().setSelection(0, 5);
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(clipboard(), line().text().left(5));
}

TEST_F(PreviewCopy, ItsMenuIsSpanish) {
    QMenu& menu = menuOf(line());
    ASSERT_EQ(menu.actions().size(), 2);
    EXPECT_EQ(menu.actions().at(0)->text(), "&Copiar");
    EXPECT_EQ(menu.actions().at(1)->text(), "&Seleccionar todo");
    menu.actions().at(0)->trigger();
    menu.close();
    EXPECT_EQ(clipboard(), line().text());
}

TEST_F(PreviewCopy, AnEmptyLineIsNotCopied) {
    press(Qt::Key_PageDown);
    ASSERT_EQ(line().text().trimmed(), "");
    EXPECT_FALSE(window().findChild<QPushButton*>("BBCopiar")->isEnabled());
    press(Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(clipboard(), "antes");
    enter("ECodPostal");
    press(Qt::Key_Tab);
    EXPECT_NE(QApplication::focusWidget(), &line());
}

} // namespace
