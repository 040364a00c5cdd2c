// What the windows of the utilities are made of.
#include "host/WindowParts.h"

#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableView>

namespace host {
namespace {

constexpr int rowPadding = 6;

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

} // namespace host
