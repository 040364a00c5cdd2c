// Finds texts that have too little room.
#include "accessibility/CutTexts.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QFontMetrics>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QScreen>
#include <QStatusBar>
#include <QStyle>
#include <QStyleOptionComboBox>
#include <QStyleOptionFrame>
#include <QTableView>

namespace accessibility_tests {
namespace {

constexpr int caretRoom = 2;         // of an edit
constexpr int statusBarMargin = 6;   // before its text
constexpr int screenMargin = 50;     // no window becomes wider than the screen for a hint
constexpr int scrollingLetters = 20; // in an edit for more letters a text scrolls under the caret
constexpr int wholeNameLetters = 60; // a municipality's name with its entity's: deliberately elided
constexpr int streetLetters = 28;    // the longest streets in their list, too

class Findings {
public:
    void check(const QWidget& widget, const QString& text, int room, int needed, const char* what) {
        if (room < needed) {
            sentences.push_back(widget.objectName().toStdString() + ": " + std::to_string(room) + " of " +
                                std::to_string(needed) + " pixels " + what + " \"" + text.toStdString() +
                                '"');
        }
    }
    void checkSize(const QWidget& widget, const QString& text, const QSize& needed) {
        check(widget, text, widget.width(), needed.width(), "across for");
        check(widget, text, widget.height(), needed.height(), "down for");
    }

    std::vector<std::string> sentences;
};

int advance(const QWidget& widget, const QString& text) {
    return widget.fontMetrics().horizontalAdvance(text);
}

void checkLabel(const QLabel& label, Findings& findings) {
    if (label.text().isEmpty()) {
        return;
    }
    if (label.wordWrap()) {
        findings.check(label, label.text(), label.height(), label.heightForWidth(label.width()), "down for");
    } else {
        findings.checkSize(label, label.text(), label.sizeHint());
    }
}

void checkCombo(const QComboBox& combo, Findings& findings) {
    QStyleOptionComboBox option;
    option.initFrom(&combo);
    option.editable = combo.isEditable();
    option.subControls = QStyle::SC_All;
    const QRect room =
        combo.style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, &combo);
    const QString text = combo.currentText();
    findings.check(combo, text, room.width(), advance(combo, text), "across for");
    findings.check(combo, text, room.height(), combo.fontMetrics().height(), "down for");
}

void checkEdit(const QLineEdit& edit, Findings& findings) {
    QStyleOptionFrame option;
    option.initFrom(&edit);
    option.lineWidth = edit.style()->pixelMetric(QStyle::PM_DefaultFrameWidth, &option, &edit);
    const QRect room = edit.style()->subElementRect(QStyle::SE_LineEditContents, &option, &edit);
    const QMargins margins = edit.textMargins();
    findings.check(edit, edit.text(), room.height() - margins.top() - margins.bottom(),
                   edit.fontMetrics().height(), "down for");
    if (edit.text().size() <= scrollingLetters) {
        findings.check(edit, edit.text(), room.width() - margins.left() - margins.right(),
                       advance(edit, edit.text()) + caretRoom, "across for");
    }
}

void checkTable(const QTableView& table, Findings& findings) {
    const QHeaderView& header = *table.horizontalHeader();
    const QAbstractItemModel& model = *table.model();
    const int titleMargin = header.style()->pixelMetric(QStyle::PM_HeaderMargin, nullptr, &header);
    const int cellMargin = table.style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, &table) + 1;
    for (int column = 0; column < model.columnCount(); ++column) {
        // Deliberate: a row's advice, which stands whole below the list, gets what the other columns leave.
        if (model.headerData(column, Qt::Horizontal).toString() == QStringLiteral("Qué hacer")) {
            continue;
        }
        const QString title = model.headerData(column, Qt::Horizontal).toString();
        findings.check(*table.parentWidget(), title, header.sectionSize(column),
                       advance(header, title) + 2 * titleMargin, "across for the title");
        findings.check(*table.parentWidget(), title, header.height(), header.fontMetrics().height(),
                       "down for the title");
        for (int row = 0; row < model.rowCount(); ++row) {
            const QString text = model.index(row, column).data().toString();
            const bool isStreet =
                title == QStringLiteral("Nombre") &&
                table.parentWidget()->parentWidget()->objectName() == QStringLiteral("DBGPostal");
            if (text.size() <= (isStreet ? streetLetters : wholeNameLetters)) {
                findings.check(*table.parentWidget(), text, table.columnWidth(column),
                               advance(table, text) + 2 * cellMargin, "across for the cell");
            }
        }
    }
    findings.check(*table.parentWidget(), {}, table.rowHeight(0), table.fontMetrics().height(),
                   "down for a row");
    const int columns = header.length();
    findings.check(*table.parentWidget(), {}, table.viewport()->width(), columns, "across for all columns");
}

void checkHints(const QStatusBar& bar, const QWidget& window, Findings& findings) {
    findings.check(bar, {}, bar.height(), bar.fontMetrics().height(), "down for");
    for (const QWidget* const control : window.findChildren<QWidget*>()) {
        const int width = advance(bar, control->toolTip());
        if (!control->toolTip().isEmpty() &&
            width < window.screen()->availableSize().width() - screenMargin) {
            findings.check(bar, control->toolTip(), bar.width() - statusBarMargin, width, "across for");
        }
    }
}

void checkPlace(const QWidget& widget, Findings& findings) {
    const QRect place = widget.geometry(), room = widget.parentWidget()->rect();
    if (!room.contains(place) && !place.isEmpty()) {
        findings.check(widget, {}, 0, 1, "inside of what holds it for");
    }
}

} // namespace

std::vector<std::string> cutTexts(const QWidget& window) {
    Findings findings;
    for (const QWidget* const widget : window.findChildren<QWidget*>()) {
        if (!widget->isVisibleTo(&window) || widget->isWindow()) {
            continue;
        }
        if (const auto* label = qobject_cast<const QLabel*>(widget)) {
            checkLabel(*label, findings);
        } else if (const auto* button = qobject_cast<const QAbstractButton*>(widget)) {
            findings.checkSize(*button, button->text(), button->sizeHint());
        } else if (const auto* frame = qobject_cast<const QGroupBox*>(widget)) {
            findings.checkSize(*frame, frame->title(), frame->minimumSizeHint());
        } else if (const auto* combo = qobject_cast<const QComboBox*>(widget)) {
            checkCombo(*combo, findings);
        } else if (const auto* edit = qobject_cast<const QLineEdit*>(widget)) {
            checkEdit(*edit, findings);
        } else if (const auto* table = qobject_cast<const QTableView*>(widget)) {
            checkTable(*table, findings);
        } else if (const auto* bar = qobject_cast<const QStatusBar*>(widget)) {
            checkHints(*bar, window, findings);
        } else {
            continue;
        }
        checkPlace(*widget, findings);
    }
    return findings.sentences;
}

} // namespace accessibility_tests
