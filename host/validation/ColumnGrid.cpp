// Shows the columns of a file.
#include "host/validation/ColumnGrid.h"

#include <QComboBox>
#include <QEvent>
#include <QHeaderView>
#include <algorithm>
#include <array>

namespace host {
namespace {

using Column = ambrel::AddressColumn;

constexpr int unused = 0; // the first entry of a list
constexpr int listRow = 0;
constexpr int widestColumn = 60; // letters

const std::array<QString, ambrel::addressColumnCount + 1>& uses() {
    static const std::array<QString, ambrel::addressColumnCount + 1> texts{
        ColumnGrid::tr("(no se usa)"),   ColumnGrid::tr("Dirección entera"), ColumnGrid::tr("Tipo de vía"),
        ColumnGrid::tr("Vía"),           ColumnGrid::tr("Número"),           ColumnGrid::tr("Piso y resto"),
        ColumnGrid::tr("Código postal"), ColumnGrid::tr("Municipio"),        ColumnGrid::tr("Provincia")};
    return texts;
}

} // namespace

ColumnGrid::ColumnGrid(QWidget* parent) : QTableWidget(parent) {
    setObjectName(QStringLiteral("GColumnas"));
    setAccessibleName(tr("Primeras filas del fichero"));
    setEditTriggers(NoEditTriggers);
    setSelectionMode(NoSelection);
    setTabKeyNavigation(false);
    setFocusPolicy(Qt::NoFocus); // its lists have the keyboard
    verticalHeader()->hide();
}

QComboBox* ColumnGrid::list(const QString& column) {
    auto* const list = new QComboBox(this);
    for (const QString& use : uses()) {
        list->addItem(use);
    }
    list->setAccessibleName(tr("Qué es la columna %1").arg(column));
    list->setFocusPolicy(Qt::StrongFocus); // the wheel scrolls the grid
    list->installEventFilter(this);
    connect(list, &QComboBox::activated, this, [this, list] { take(*list); });
    return list;
}

void ColumnGrid::showFile(const ambrel::AddressFilePreview& preview) {
    for (int column = 0; column < columnCount(); ++column) {
        removeCellWidget(listRow, column);
    }
    names_ = preview.names;
    lists_.clear();
    clear();
    setColumnCount(static_cast<int>(preview.names.size()));
    setRowCount(preview.names.empty() ? 0 : static_cast<int>(preview.rows.size()) + 1);
    for (int column = 0; column < columnCount(); ++column) {
        const QString name = QString::fromStdString(preview.names[static_cast<std::size_t>(column)]);
        setHorizontalHeaderItem(column, new QTableWidgetItem(name));
        lists_.push_back(list(name));
        lists_.back()->setObjectName(QStringLiteral("CBColumna%1").arg(column + 1));
        setCellWidget(listRow, column, lists_.back());
    }
    for (std::size_t use = 0; use < preview.places.size(); ++use) {
        if (const auto& place = preview.places[use]; place && *place < lists_.size()) {
            lists_[*place]->setCurrentIndex(static_cast<int>(use) + 1);
        }
    }
    for (std::size_t row = 0; row < preview.rows.size(); ++row) {
        for (std::size_t column = 0; column < std::min(preview.rows[row].size(), lists_.size()); ++column) {
            auto* const item =
                new QTableWidgetItem(QString::fromStdString(preview.rows[row][column]).simplified());
            setItem(static_cast<int>(row) + 1, static_cast<int>(column), item);
        }
    }
    orderForTab();
    resizeColumnsToContents();
    resizeRowsToContents();
    const int widest = widestColumn * fontMetrics().averageCharWidth();
    for (int column = 0; column < columnCount(); ++column) {
        setColumnWidth(column, std::min(columnWidth(column), widest));
    }
}

/// The lists were made last, and follow what stands before the grid.
void ColumnGrid::orderForTab() {
    QWidget* before = previousInFocusChain();
    while (before != this &&
           (!(before->focusPolicy() & Qt::TabFocus) || std::ranges::find(lists_, before) != lists_.end())) {
        before = before->previousInFocusChain();
    }
    for (QComboBox* const list : lists_) {
        setTabOrder(before, list);
        before = list;
    }
}

/// A part stands in one column only.
void ColumnGrid::take(const QComboBox& changed) {
    for (QComboBox* const other : lists_) {
        if (other != &changed && other->currentIndex() == changed.currentIndex()) {
            other->setCurrentIndex(unused);
        }
    }
    Q_EMIT chosen();
}

ambrel::NamedColumns ColumnGrid::columns() const {
    ambrel::NamedColumns named;
    for (std::size_t use = 0; use < ambrel::addressColumnCount; ++use) {
        const auto list = std::ranges::find(lists_, static_cast<int>(use) + 1, &QComboBox::currentIndex);
        if (list == lists_.end()) {
            named[static_cast<Column>(use)].clear();
            continue;
        }
        const std::ptrdiff_t place = list - lists_.begin();
        const std::string& name = names_[static_cast<std::size_t>(place)];
        // A number may be the name of another column.
        const bool isClear = !name.empty() && std::ranges::count(names_, name) == 1;
        named[static_cast<Column>(use)] = isClear ? name : std::to_string(place + 1);
    }
    return named;
}

bool ColumnGrid::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FocusIn) {
        const auto list = std::ranges::find(lists_, watched);
        if (list != lists_.end()) {
            scrollTo(model()->index(listRow, static_cast<int>(list - lists_.begin())));
        }
    }
    return QTableWidget::eventFilter(watched, event);
}

} // namespace host
