// Compares the controls and texts of a dialog with a table.
#include "dialogs/DialogTexts.h"

#include <gtest/gtest.h>

#include <QGroupBox>
#include <QPushButton>
#include <QTest>
#include <QVariant>
#include <algorithm>

#include "support/ModalScript.h"

namespace ambrel::test {
namespace {

std::string printed(const QString& text) { return text.toStdString(); }

QString textOf(const QWidget& control) {
    if (control.isWindow()) {
        return control.windowTitle();
    }
    for (const char* const property : {"title", "text"}) {
        const QVariant text = control.property(property);
        if (text.isValid()) {
            return text.toString();
        }
    }
    return {};
}

/// Where named controls are searched for; other widgets contain only parts of their own.
bool isContainer(const QWidget& widget) {
    const QString name = widget.metaObject()->className();
    return widget.isWindow() || qobject_cast<const QGroupBox*>(&widget) || name == "QWidget" ||
           name == "QFrame";
}

void expectUsable(const QWidget& control) {
    if (control.focusPolicy() != Qt::NoFocus && !control.isWindow()) {
        EXPECT_FALSE(control.accessibleName().isEmpty()) << "no accessible name";
    }
    if (!control.toolTip().isEmpty()) {
        EXPECT_EQ(printed(control.accessibleDescription()), printed(control.toolTip()));
    }
    if (const auto* button = qobject_cast<const QPushButton*>(&control)) {
        EXPECT_FALSE(button->isDefault() || button->autoDefault()) << "is a default button";
    }
    if (control.isVisible() && !control.isWindow()) {
        EXPECT_GE(control.width(), control.minimumSizeHint().width()) << "is cut";
        EXPECT_GE(control.height(), control.minimumSizeHint().height()) << "is cut";
    }
}

void expectControl(const QDialog& dialog, const ControlTexts& expected) {
    SCOPED_TRACE(printed(expected.name));
    const bool isDialog = expected.name == dialog.objectName();
    const QWidget* const control = isDialog ? &dialog : dialog.findChild<QWidget*>(expected.name);
    if (!control) {
        ADD_FAILURE() << "is not there";
        return;
    }
    EXPECT_EQ(control->metaObject()->className(), printed(expected.className));
    EXPECT_EQ(printed(textOf(*control)), printed(expected.text));
    EXPECT_EQ(printed(control->toolTip()), printed(expected.hint));
    const QSize size = isDialog ? dialog.minimumSize() : control->size();
    EXPECT_GE(size.width(), expected.least.width());
    EXPECT_GE(size.height(), expected.least.height());
    expectUsable(*control);
}

void close(QDialog& dialog, const std::string& way) {
    if (way == "Escape") {
        QTest::keyClick(dialog.focusWidget() ? dialog.focusWidget() : &dialog, Qt::Key_Escape);
    } else if (way == "close box") {
        dialog.close();
    } else {
        QTest::mouseClick(&child<QPushButton>(dialog, way.c_str()), Qt::LeftButton);
    }
}

} // namespace

void expectControls(const QDialog& dialog, const std::vector<ControlTexts>& controls) {
    for (const ControlTexts& expected : controls) {
        expectControl(dialog, expected);
    }
    for (const QWidget* const widget : dialog.findChildren<QWidget*>()) {
        const QString name = widget->objectName();
        if (name.isEmpty() || name.startsWith("qt_") || !isContainer(*widget->parentWidget())) {
            continue;
        }
        const auto isThis = [&](const ControlTexts& expected) { return expected.name == name; };
        EXPECT_TRUE(std::any_of(controls.begin(), controls.end(), isThis))
            << printed(name) << " is not in the table";
    }
}

void expectModalResults(const std::function<std::unique_ptr<QDialog>()>& make,
                        const std::vector<std::pair<std::string, int>>& results) {
    for (const auto& [way, result] : results) {
        SCOPED_TRACE(way);
        const std::unique_ptr<QDialog> dialog = make();
        ModalScript script;
        script.expect(dialog->metaObject()->className(), [&way = way](QDialog& shown) { close(shown, way); });
        EXPECT_EQ(dialog->exec(), result);
    }
}

} // namespace ambrel::test
