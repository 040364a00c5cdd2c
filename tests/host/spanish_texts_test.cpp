// Qt's own texts in Spanish.
#include "host/SpanishTexts.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QCoreApplication>
#include <QFileDialog>
#include <QHeaderView>
#include <QKeySequence>
#include <QLabel>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeView>
#include <algorithm>
#include <map>
#include <string>

namespace {

/// Where a text stands, and the text.
using Texts = std::map<std::string, QString>;

bool isWord(const QString& text) {
    return std::any_of(text.begin(), text.end(), [](QChar letter) { return letter.isLetter(); });
}

/// What a window that chooses a file shows and says.
Texts textsOf(QFileDialog::AcceptMode mode, const QString& folder) {
    QFileDialog dialog(nullptr, QStringLiteral("Título"), folder);
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    dialog.setAcceptMode(mode);
    dialog.show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(&dialog));
    Texts texts;
    const auto add = [&](const QWidget& widget, const char* what, const QString& text) {
        if (isWord(text)) {
            texts.emplace(widget.objectName().toStdString() + what + std::to_string(texts.size()), text);
        }
    };
    for (const QLabel* const label : dialog.findChildren<QLabel*>()) {
        if (label->isVisible()) {
            add(*label, " label ", label->text());
        }
    }
    for (const QAbstractButton* const button : dialog.findChildren<QAbstractButton*>()) {
        if (button->isVisible()) {
            add(*button, " button ", button->text());
            add(*button, " tip ", button->toolTip());
        }
    }
    const auto* const list = dialog.findChild<QTreeView*>(QStringLiteral("treeView"));
    for (int column = 0; column < list->model()->columnCount(); ++column) {
        add(*list, " title ", list->model()->headerData(column, Qt::Horizontal).toString());
    }
    return texts;
}

TEST(SpanishTexts, NoEnglishIsLeftInTheWindowThatChoosesAFile) {
    const QTemporaryDir folder;
    for (const auto mode : {QFileDialog::AcceptOpen, QFileDialog::AcceptSave}) {
        const Texts english = textsOf(mode, folder.path());
        host::SpanishTexts spanish;
        QCoreApplication::installTranslator(&spanish);
        const Texts translated = textsOf(mode, folder.path());
        QCoreApplication::removeTranslator(&spanish);
        ASSERT_GT(english.size(), 10U);
        ASSERT_EQ(translated.size(), english.size());
        for (const auto& [place, text] : english) {
            EXPECT_TRUE(translated.contains(place)) << place;
            EXPECT_NE(translated.at(place).toStdString(), text.toStdString()) << place;
        }
    }
}

TEST(SpanishTexts, KeysHaveTheNamesOnTheKeyboard) {
    host::SpanishTexts spanish;
    QCoreApplication::installTranslator(&spanish);
    const auto shown = [](QKeyCombination keys) {
        return QKeySequence(keys).toString(QKeySequence::NativeText).toStdString();
    };
    EXPECT_EQ(shown(Qt::Key_PageUp), "RePág");
    EXPECT_EQ(shown(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), "Ctrl+Mayús+Z");
    EXPECT_EQ(shown(Qt::SHIFT | Qt::Key_Delete), "Mayús+Supr");
    EXPECT_EQ(QKeySequence(QStringLiteral("Shift+PgUp")), QKeySequence(Qt::SHIFT | Qt::Key_PageUp));
    QCoreApplication::removeTranslator(&spanish);
}

} // namespace
