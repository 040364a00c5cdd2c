// What the windows of the utilities are made of.
#include "host/WindowParts.h"

#include <QBoxLayout>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QTableView>
#include <algorithm>

namespace host {
namespace {

constexpr int rowPadding = 6;
constexpr QSize windowFrame(4, 32); // a title, and borders

QSize roomFor(const QWidget& window) { return window.screen()->availableSize() - windowFrame; }

} // namespace

QPushButton* pushButton(const char* objectName, const QString& text, QWidget* parent) {
    auto* const button = new QPushButton(text, parent);
    button->setObjectName(QLatin1String(objectName));
    button->setAutoDefault(false);
    return button;
}

QLabel* wrappedLabel(const char* objectName, QWidget* parent) {
    auto* const label = new QLabel(parent);
    label->setObjectName(QLatin1String(objectName));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

QTableView* rowTable(const char* objectName, const QString& name, QAbstractItemModel& model,
                     QWidget* parent) {
    auto* const table = new QTableView(parent);
    table->setObjectName(QLatin1String(objectName));
    table->setAccessibleName(name);
    table->setModel(&model);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setSelectionMode(QAbstractItemView::SingleSelection);
    table->setTabKeyNavigation(false);
    table->setWordWrap(false);
    table->verticalHeader()->hide();
    table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table->verticalHeader()->setDefaultSectionSize(table->fontMetrics().height() + rowPadding);
    table->horizontalHeader()->setHighlightSections(false);
    return table;
}

void resizeWithinScreen(QWidget& window, QSize wanted) { window.resize(wanted.boundedTo(roomFor(window))); }

void closeUpOnLowScreen(const QWidget& window) {
    for (const QWidget* const part : window.findChildren<QWidget*>()) {
        part->ensurePolished(); // a style sheet has fonts and margins of its own
    }
    if (window.sizeHint().height() <= roomFor(window).height()) {
        return;
    }
    const QList<QLayout*> layouts = window.findChildren<QLayout*>();
    for (QLayout* const layout : layouts) {
        const QMargins margins = layout->contentsMargins();
        layout->setContentsMargins(margins.left(), margins.top() / 2, margins.right(), margins.bottom() / 2);
        if (auto* const column = qobject_cast<QVBoxLayout*>(layout)) {
            column->setSpacing(column->spacing() / 2);
        } else if (auto* const grid = qobject_cast<QGridLayout*>(layout)) {
            grid->setVerticalSpacing(grid->verticalSpacing() / 2);
        }
    }
    std::for_each(layouts.rbegin(), layouts.rend(), [](QLayout* layout) { layout->activate(); });
}

} // namespace host
