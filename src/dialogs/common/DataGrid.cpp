// The data grid: the widget around its parts, and its event handling.
#include "dialogs/common/DataGrid.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QFrame>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLayout>
#include <QMenu>
#include <QMouseEvent>
#include <QPointer>
#include <QScrollBar>
#include <QTimer>
#include <QWheelEvent>
#include <algorithm>

#include "dialogs/common/GridModel.h"
#include "dialogs/common/GridParts.h"
#include "dialogs/common/GridView.h"
#include "services/EventGuard.h"

namespace ambrel {
namespace {

constexpr int wheelNotch = 120;                                   // eighths of a degree
constexpr int usualRows = 10, fewestRows = 3, fewestLetters = 20; // for size hints

/// With Shift, the rows passed by a move are marked.
GridMarks marksWith(Qt::KeyboardModifiers modifiers) {
    return modifiers.testFlag(Qt::ShiftModifier) ? GridMarks::Yes : GridMarks::No;
}

} // namespace

DataGrid::DataGrid(QWidget* parent) : QWidget(parent), parts_(std::make_unique<Parts>(*this)) {
    GridView* const view = parts_->view;
    setFocusProxy(view);
    setFocusPolicy(Qt::TabFocus);
    parts_->bar->installEventFilter(this);
    view->viewport()->installEventFilter(this);
    connect(view, &GridView::roomChanged, this, [this] { parts_->readSoon(); });
    connect(view, &GridView::rowPressed, this, [this](int row, Qt::KeyboardModifiers modifiers) {
        parts_->moveToRow(row, marksWith(modifiers));
    });
    connect(view, &GridView::rowDoubleClicked, this, [this](int row) {
        parts_->moveToRow(row);
        if (row == parts_->rows.current()) {
            emit rowDoubleClicked();
        }
    });
    QHeaderView* const header = view->horizontalHeader();
    connect(header, &QHeaderView::sectionClicked, this, [this](int column) {
        parts_->showOrder(); // the header puts the arrow on any title that is clicked
        emit titleClicked(column);
    });
    connect(header, &QHeaderView::sectionResized, this, [this](int column, int, int width) {
        if (!parts_->isSettingWidth && width > 0) {
            parts_->model->setWidth(column, width); // dragged by the user
        }
    });
    connect(parts_->bar, &QScrollBar::actionTriggered, this,
            [this](int action) { parts_->moveByBar(action); });
    connect(parts_->bar, &QScrollBar::sliderReleased, this, [this] { parts_->showPlace(); });
    connect(parts_->further, &QTimer::timeout, this, [this] {
        parts_->rows.lookFurther();
        parts_->read();
    });
}

DataGrid::~DataGrid() = default;

void DataGrid::setDataSource(dbase::DataSource* source) { parts_->rows.setSource(source); }

void DataGrid::setColumns(std::vector<GridColumn> columns) {
    parts_->model->setColumns(std::move(columns));
    for (int column = 0; column < columnCount(); ++column) {
        parts_->resizeColumn(column, columnWidth(column));
    }
    parts_->rows.expire();
}

int DataGrid::columnCount() const { return parts_->model->columnCount(); }

QString DataGrid::columnTitle(int column) const { return parts_->model->column(column).title; }

void DataGrid::setColumnTitle(int column, const QString& title) { parts_->model->setTitle(column, title); }

int DataGrid::columnWidth(int column) const { return parts_->model->column(column).width; }

void DataGrid::setColumnWidth(int column, int width) { parts_->resizeColumn(column, width); }

int DataGrid::clientWidth() const {
    if (layout()->isEnabled()) {
        layout()->activate();
    }
    parts_->frame->layout()->activate();
    return parts_->view->viewport()->width();
}

void DataGrid::refresh() {
    Parts& parts = *parts_;
    runGuarded([&parts] {
        parts.rows.retry();
        dbase::Dataset* const table = parts.rows.table();
        if (!table || table->state() != dbase::DatasetState::Browse) {
            return;
        }
        try {
            table->refresh();
        } catch (...) {
            parts.rows.giveUp();
            parts.show();
            throw;
        }
    });
    parts.read();
}

int DataGrid::visibleRowCount() const {
    parts_->read();
    return static_cast<int>(parts_->rows.texts().size());
}

int DataGrid::currentRow() const {
    parts_->read();
    return parts_->rows.current();
}

QString DataGrid::cellText(int row, int column) const {
    parts_->read();
    return parts_->model->index(row, column).data().toString();
}

QRect DataGrid::cellRect(int row, int column) const {
    parts_->read();
    const QRect place = parts_->view->visualRect(parts_->model->index(row, column));
    return place.translated(parts_->view->viewport()->mapTo(this, QPoint()));
}

QRect DataGrid::titleRect(int column) const {
    const QHeaderView* const header = parts_->view->horizontalHeader();
    const QRect place(header->sectionViewportPosition(column), 0, header->sectionSize(column),
                      header->height());
    return place.translated(header->viewport()->mapTo(this, QPoint()));
}

QSize DataGrid::sizeHint() const {
    int width = parts_->bar->sizeHint().width() + 2 * parts_->frame->frameWidth();
    for (int column = 0; column < columnCount(); ++column) {
        width += std::max(0, columnWidth(column));
    }
    return QSize(width, parts_->heightOf(usualRows)).expandedTo(minimumSizeHint());
}

QSize DataGrid::minimumSizeHint() const {
    return {fontMetrics().averageCharWidth() * fewestLetters, parts_->heightOf(fewestRows)};
}

// --- Events

bool DataGrid::event(QEvent* event) {
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
        return passOn(static_cast<QMouseEvent&>(*event)) || QWidget::event(event);
    case QEvent::ShortcutOverride:
        if (static_cast<QKeyEvent*>(event)->matches(QKeySequence::Copy)) {
            event->accept();
            return true;
        }
        return QWidget::event(event);
    default:
        if (event->type() != gridReadEvent) {
            return QWidget::event(event);
        }
        parts_->isReadSoon = false;
        if (isVisible()) { // otherwise when it is shown
            parts_->read();
        }
        return true;
    }
}

/// Forwards a click that a program sends to the grid itself to the part at that position.
bool DataGrid::passOn(QMouseEvent& event) {
    QWidget* const part = childAt(event.position().toPoint());
    if (!part || parts_->isPassingOn) {
        return false;
    }
    parts_->isPassingOn = true;
    QMouseEvent copy(event.type(), part->mapFrom(this, event.position()), event.globalPosition(),
                     event.button(), event.buttons(), event.modifiers());
    const QPointer<DataGrid> alive = this;
    QCoreApplication::sendEvent(part, &copy);
    if (alive) {
        parts_->isPassingOn = false;
    }
    event.accept();
    return true;
}

bool DataGrid::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Wheel) {
        wheelEvent(static_cast<QWheelEvent*>(event));
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void DataGrid::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy)) {
        runGuarded([this] { parts_->copy(GridTitles::OfSeveralRows); });
        return;
    }
    QScrollBar* const sideways = parts_->view->horizontalScrollBar();
    switch (event->key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_Home:
    case Qt::Key_End:
        parts_->moveByKey(event->key(), marksWith(event->modifiers()));
        break;
    case Qt::Key_Left:
        sideways->triggerAction(QAbstractSlider::SliderSingleStepSub);
        break;
    case Qt::Key_Right:
        sideways->triggerAction(QAbstractSlider::SliderSingleStepAdd);
        break;
    default:
        event->ignore();
    }
}

/// Acts on the marked rows, wherever the click was: only the left button selects.
void DataGrid::contextMenuEvent(QContextMenuEvent* event) {
    parts_->read();
    const int current = parts_->rows.current();
    if (current < 0) {
        return;
    }
    auto* const menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const auto add = [&](const QString& text, GridTitles titles) {
        return menu->addAction(text, this, guarded([this, titles] { parts_->copy(titles); }));
    };
    const bool several = parts_->hasSeveralMarked();
    add(several ? QStringLiteral("&Copiar las filas con sus títulos") : QStringLiteral("&Copiar la fila"),
        GridTitles::OfSeveralRows)
        ->setShortcut(QKeySequence::Copy);
    if (!several) {
        add(QStringLiteral("Copiar la fila con los &títulos"), GridTitles::Always);
    }
    const bool isByKey = event->reason() == QContextMenuEvent::Keyboard;
    menu->popup(isByKey ? mapToGlobal(cellRect(current, 0).center()) : event->globalPos());
    event->accept();
}

void DataGrid::wheelEvent(QWheelEvent* event) {
    parts_->wheelRest += event->angleDelta().y() * QApplication::wheelScrollLines();
    const int count = parts_->wheelRest / wheelNotch;
    parts_->wheelRest -= count * wheelNotch;
    if (count != 0) {
        parts_->scrollBy(-count);
    }
    event->accept();
}

void DataGrid::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    // Screen readers read the table inside, under the grid's name.
    parts_->view->setAccessibleName(accessibleName());
    parts_->view->setAccessibleDescription(accessibleDescription());
    parts_->readSoon();
}

} // namespace ambrel
