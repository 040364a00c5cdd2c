// Test fixture: a list of suggestions under a plain edit box.
#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>
#include <QListView>
#include <QTest>
#include <QVBoxLayout>
#include <vector>

#include "form/ShownList.h"
#include "form/SuggestionList.h"
#include "support/ShownWindow.h"
#include "support/Typing.h"

namespace postal_tests {

/// Suggests the rows whose names contain what was typed.
class ListUnderABox : public ::testing::Test {
protected:
    using SuggestionList = ambrel::SuggestionList;
    using SuggestionRow = ambrel::SuggestionRow;
    using Rows = SuggestionList::Rows;
    using Occasion = SuggestionList::Occasion;

    ListUnderABox() {
        auto* column = new QVBoxLayout(&form);
        column->addWidget(box);
        column->addWidget(next);
        list = new SuggestionList(
            box, [this](const QString& text, Occasion occasion) { return answer(text, occasion); });
    }

    std::optional<Rows> answer(const QString& text, Occasion occasion) {
        asked << text;
        occasions.push_back(occasion);
        if (unready > 0) {
            --unready;
            return std::nullopt;
        }
        Rows found;
        for (const SuggestionRow& row : all) {
            if (row.name.contains(text, Qt::CaseInsensitive)) {
                found.push_back(row);
            }
        }
        return found;
    }

    void show() {
        ambrel::test::showActive(form);
        box->setFocus();
    }
    void type(const QString& text) {
        ambrel::test::typeInto(*box, text);
        QApplication::processEvents();
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
        QApplication::processEvents();
    }
    void clickRow(int row) {
        QListView& shown = *shownList();
        QTest::mouseClick(shown.viewport(), Qt::LeftButton, {},
                          shown.visualRect(shown.model()->index(row, 0)).center());
    }

    Rows all{{"ALCALA", "CL", "MADRID", "28014", {}, {}},
             {"ALCALA DE GUADAIRA", "AV", "MADRID", "28021", {}, {}},
             {"GRAN VIA", "CL", "MADRID", "28013", {}, {}}};
    int unready = 0;
    QStringList asked;
    std::vector<Occasion> occasions;
    QWidget form;
    QLineEdit* box = new QLineEdit(&form);
    QLineEdit* next = new QLineEdit(&form);
    SuggestionList* list;
};

} // namespace postal_tests
