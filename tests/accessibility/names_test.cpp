// What a screen reader says, and where the underlined letters lead.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAction>
#include <QComboBox>
#include <QDialog>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QTest>
#include <algorithm>
#include <map>

#include "accessibility/FormControls.h"
#include "accessibility/Forms.h"

namespace accessibility_tests {
namespace {

class Names : public Forms, public ::testing::WithParamInterface<Form> {};

INSTANTIATE_TEST_SUITE_P(Form, Names, ::testing::ValuesIn(allForms()),
                         [](const auto& form) { return nameOf(form.param); });

/// A control for typing or choosing does not show by itself what it is for.
bool needsLabel(const QWidget& control) {
    return qobject_cast<const QLineEdit*>(&control) || qobject_cast<const QComboBox*>(&control);
}

bool hasLabel(const QWidget& control, const QWidget& window) {
    const auto labels = window.findChildren<QLabel*>();
    if (std::any_of(labels.begin(), labels.end(), [&](const QLabel* label) {
            return label->buddy() == &control && label->isVisibleTo(&window);
        })) {
        return true;
    }
    const auto* frame = qobject_cast<const QGroupBox*>(control.parentWidget());
    return frame && !frame->title().isEmpty() && frame->findChildren<QLineEdit*>().size() == 1;
}

/// The buttons that Enter may press in a form that should have one.
std::vector<std::string> defaultButtonsOf(Form form) {
    switch (form) {
    case Form::MensajePregunta:
        return {"BBSi"};
    case Form::MensajeAviso:
        return {"BBAceptar"};
    case Form::Rutina:
        return {"BBEjecutar"};
    default:
        return {};
    }
}

TEST_P(Names, EachControlHasAName) {
    show(GetParam(), [](QWidget& window) {
        EXPECT_FALSE(window.windowTitle().isEmpty());
        EXPECT_EQ(controlsOf(window).empty(), GetParam() == Form::Progreso) << "it only shows";
        for (QWidget* const control : controlsOf(window)) {
            SCOPED_TRACE(control->objectName().toStdString());
            const std::string name = spoken(*control, QAccessible::Name);
            EXPECT_FALSE(name.empty());
            EXPECT_EQ(name.find('&'), std::string::npos) << name;
            if (QWidget* const inner = control->focusProxy(); inner && control->isAncestorOf(inner)) {
                EXPECT_EQ(spoken(*inner, QAccessible::Name), name) << "of the part that has the focus";
            }
        }
    });
}

TEST_P(Names, NoTwoControlsHaveTheSameName) {
    show(GetParam(), [](QWidget& window) {
        std::map<std::string, std::string> bearers;
        for (QWidget* const control : controlsOf(window)) {
            const std::string object = control->objectName().toStdString();
            const auto [known, isNew] = bearers.emplace(spoken(*control, QAccessible::Name), object);
            EXPECT_TRUE(isNew) << object << " is called as " << known->second << ": " << known->first;
        }
    });
}

TEST_P(Names, AHintIsTheDescription) {
    show(GetParam(), [](QWidget& window) {
        for (QWidget* const control : controlsOf(window)) {
            SCOPED_TRACE(control->objectName().toStdString());
            if (!control->toolTip().isEmpty()) {
                EXPECT_EQ(spoken(*control, QAccessible::Description), control->toolTip().toStdString());
            }
        }
    });
}

TEST_P(Names, WhatIsTypedOrChosenHasALabel) {
    show(GetParam(), [](QWidget& window) {
        for (const QWidget* const control : controlsOf(window)) {
            if (needsLabel(*control)) {
                EXPECT_TRUE(hasLabel(*control, window)) << control->objectName().toStdString();
            }
        }
    });
}

TEST_P(Names, AnUnderlinedLetterIsUnderlinedOnce) {
    show(GetParam(), [](QWidget& window) {
        std::map<QChar, std::string> bearers;
        for (const Mnemonic& mnemonic : mnemonicsOf(window)) {
            const std::string bearer = mnemonic.bearer->objectName().toStdString();
            EXPECT_TRUE(mnemonic.target) << bearer << " leads nowhere";
            const auto [known, isNew] = bearers.emplace(mnemonic.letter, bearer);
            EXPECT_TRUE(isNew) << bearer << " has the letter of " << known->second;
        }
    });
}

TEST_P(Names, TheLetterOfALabelLeadsToItsControl) {
    show(GetParam(), [](QWidget& window) {
        for (const Mnemonic& mnemonic : mnemonicsOf(window)) {
            if (!qobject_cast<QLabel*>(mnemonic.bearer)) {
                continue;
            }
            press(window, static_cast<Qt::Key>(mnemonic.letter.toUpper().unicode()), Qt::AltModifier);
            EXPECT_EQ(focused(window), mnemonic.target->objectName().toStdString())
                << "Alt+" << static_cast<char>(mnemonic.letter.toLatin1());
        }
    });
}

TEST_P(Names, EnterPressesNoButtonByItself) {
    show(GetParam(), [](QWidget& window) {
        std::vector<std::string> buttons;
        for (const QPushButton* const button : window.findChildren<QPushButton*>()) {
            if (button->isDefault()) {
                buttons.push_back(button->objectName().toStdString());
            }
        }
        EXPECT_EQ(buttons, defaultButtonsOf(GetParam()));
    });
}

/// Elsewhere Enter moves to the next control, or does nothing.
TEST_P(Names, AButtonThatEnterMayPressIsOneOfABoxWithADefault) {
    show(GetParam(), [](QWidget& window) {
        for (const QPushButton* const button : window.findChildren<QPushButton*>()) {
            EXPECT_EQ(button->autoDefault(), !defaultButtonsOf(GetParam()).empty())
                << button->objectName().toStdString();
        }
    });
}

class MenuNames : public Forms {};

TEST_F(MenuNames, EachMenuHasALetterThatIsUnderlinedOnce) {
    show(Form::Clientes, [](QWidget& window) {
        const auto* const bar = window.findChild<QMenuBar*>();
        ASSERT_TRUE(bar);
        for (const QAction* const entry : bar->actions()) {
            ASSERT_TRUE(entry->menu());
            std::map<QString, int> letters;
            for (const QAction* const item : entry->menu()->actions()) {
                ++letters[QKeySequence::mnemonic(item->text()).toString()];
            }
            letters.erase(QString());
            for (const auto& [letter, count] : letters) {
                EXPECT_EQ(count, 1) << letter.toStdString() << " in " << entry->text().toStdString();
            }
        }
    });
}

} // namespace
} // namespace accessibility_tests
