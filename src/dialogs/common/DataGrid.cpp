// The data grid: its parts, what makes it read, what moves the table.
#include "dialogs/common/DataGrid.h"

#include <QApplication>
#include <QClipboard>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointer>
#include <QScrollBar>
#include <QTimer>
#include <QWheelEvent>
#include <algorithm>
#include <chrono>

#include "dialogs/common/GridModel.h"
#include "dialogs/common/GridRows.h"
#include "dialogs/common/GridView.h"
#include "services/EventGuard.h"

namespace ambrel {
namespace {

constexpr int wholeBar = 1'000'000; // steps of the scroll bar; a share of the table is exact enough then
constexpr int wheelNotch = 120;     // eighths of a degree
constexpr int usualRows = 10, fewestRows = 3, fewestLetters = 20; // of the sizes that it asks for
constexpr std::chrono::milliseconds restBeforeLookingFurther{60};

const auto readEvent = static_cast<QEvent::Type>(QEvent::registerEventType());

} // namespace

struct DataGrid::Parts {
    explicit Parts(DataGrid& owner);

    void readSoon();
    void read();
    void show();
    void showPlace();
    void move(const std::function<void(dbase::Dataset&)>& how);
    void moveByKey(int key);
    void moveByBar(int action);
    void moveToRow(int row);
    void scrollBy(int count);
    void copyRow();
    [[nodiscard]] int heightOf(int rowCount) const;
    void resizeColumn(int column, int width);

    DataGrid& grid;
    GridModel* model;
    QFrame* frame;
    GridView* view;
    QScrollBar* bar;
    QTimer* further;
    GridRows rows;
    dbase::RecordNumber shownRecord = 0;
    int wheelRest = 0;
    bool isReadSoon = false, isPassingOn = false, isSettingWidth = false;
};

DataGrid::Parts::Parts(DataGrid& owner)
    : grid(owner), model(new GridModel(&owner)), frame(new QFrame(&owner)), view(new GridView(frame)),
      bar(new QScrollBar(Qt::Vertical, frame)), further(new QTimer(&owner)), rows([this] { readSoon(); }) {
    view->setModel(model);
    frame->setFrameStyle(static_cast<int>(QFrame::StyledPanel) | static_cast<int>(QFrame::Sunken));
    bar->setContextMenuPolicy(Qt::NoContextMenu);
    bar->setAccessibleName(QStringLiteral("Posición en la lista"));
    further->setSingleShot(true);
    further->setInterval(restBeforeLookingFurther);
    auto* inside = new QHBoxLayout(frame);
    inside->setContentsMargins({});
    inside->setSpacing(0);
    inside->addWidget(view);
    inside->addWidget(bar);
    auto* around = new QHBoxLayout(&owner);
    around->setContentsMargins({});
    around->addWidget(frame);
}

// --- Reading

/// Not at once: a program may be in the middle of a walk. Never while painting: a fault opens a box.
void DataGrid::Parts::readSoon() {
    if (!isReadSoon) {
        isReadSoon = true;
        QCoreApplication::postEvent(&grid, new QEvent(readEvent), Qt::HighEventPriority);
    }
}

void DataGrid::Parts::read() {
    runGuarded([this] {
        try {
            if (rows.read(model->columns(), static_cast<std::size_t>(view->room())))
                show();
        } catch (...) {
            show();
            throw;
        }
    });
}

void DataGrid::Parts::show() {
    model->setRows(rows.texts());
    const dbase::RecordNumber record = rows.currentRecord();
    view->showCurrent(rows.current(), record != shownRecord);
    shownRecord = record;
    showPlace();
    if (rows.isCut())
        further->start();
    else
        further->stop();
}

void DataGrid::Parts::showPlace() {
    if (bar->isSliderDown())
        return; // the user holds it
    const bool showsAll = rows.showsBegin() && rows.showsEnd();
    const int page =
        std::clamp(static_cast<int>((rows.lastPlace() - rows.firstPlace()) * wholeBar), 1, wholeBar / 2);
    const int end = showsAll ? 0 : wholeBar - page;
    bar->setRange(0, end);
    bar->setPageStep(page);
    bar->setEnabled(!showsAll);
    if (rows.showsBegin())
        bar->setValue(0);
    else if (rows.showsEnd())
        bar->setValue(end);
    else
        bar->setValue(std::clamp(static_cast<int>(rows.firstPlace() * wholeBar), 1, std::max(1, end - 1)));
}

// --- Moving

void DataGrid::Parts::move(const std::function<void(dbase::Dataset&)>& how) {
    read();
    runGuarded([&] {
        dbase::Dataset* const table = rows.table();
        if (!table)
            return;
        try {
            how(*table);
        } catch (...) {
            try {
                rows.expire();
                rows.read(model->columns(), static_cast<std::size_t>(view->room()));
            } catch (const std::exception&) {
                // The same fault most likely; the first one is the one to tell.
            }
            show();
            throw;
        }
    });
    read();
}

void DataGrid::Parts::moveByKey(int key) {
    move([&](dbase::Dataset& table) {
        const int page = std::max(1, view->room() - 1);
        switch (key) {
        case Qt::Key_Up:
        case Qt::Key_Down:
            rows.moveBy(table, key == Qt::Key_Up ? -1 : 1);
            break;
        case Qt::Key_PageUp:
        case Qt::Key_PageDown:
            rows.keepPlace();
            rows.moveBy(table, key == Qt::Key_PageUp ? -page : page);
            break;
        case Qt::Key_Home:
            table.first();
            break;
        default:
            table.last();
            break;
        }
    });
}

void DataGrid::Parts::moveByBar(int action) {
    switch (action) {
    case QAbstractSlider::SliderSingleStepAdd:
        return moveByKey(Qt::Key_Down);
    case QAbstractSlider::SliderSingleStepSub:
        return moveByKey(Qt::Key_Up);
    case QAbstractSlider::SliderPageStepAdd:
        return moveByKey(Qt::Key_PageDown);
    case QAbstractSlider::SliderPageStepSub:
        return moveByKey(Qt::Key_PageUp);
    default:
        break;
    }
    const int position = bar->sliderPosition();
    if (position <= bar->minimum())
        moveByKey(Qt::Key_Home);
    else if (position >= bar->maximum())
        moveByKey(Qt::Key_End);
    else
        move([&](dbase::Dataset& table) {
            rows.moveToPlace(table, static_cast<double>(position) / wholeBar);
        });
}

void DataGrid::Parts::moveToRow(int row) {
    move([&](dbase::Dataset& table) { rows.moveToRow(table, row); });
}

void DataGrid::Parts::scrollBy(int count) {
    move([&](dbase::Dataset& table) {
        rows.keepPlace();
        rows.moveBy(table, count);
    });
}

void DataGrid::Parts::copyRow() {
    read();
    const int current = rows.current();
    if (current < 0)
        return;
    QStringList texts;
    for (int column = 0; column < model->columnCount(); ++column) {
        if (!view->isColumnHidden(column))
            texts.push_back(grid.cellText(current, column));
    }
    QApplication::clipboard()->setText(texts.join(QLatin1Char('\t')));
}

void DataGrid::Parts::resizeColumn(int column, int width) {
    model->setWidth(column, width);
    isSettingWidth = true;
    view->showWidth(column, width);
    isSettingWidth = false;
}

int DataGrid::Parts::heightOf(int rowCount) const {
    return view->heightOf(rowCount) + 2 * frame->frameWidth();
}

// --- The widget

DataGrid::DataGrid(QWidget* parent) : QWidget(parent), parts_(std::make_unique<Parts>(*this)) {
    GridView* const view = parts_->view;
    setFocusProxy(view);
    setFocusPolicy(Qt::TabFocus);
    parts_->bar->installEventFilter(this);
    view->viewport()->installEventFilter(this);
    connect(view, &GridView::roomChanged, this, [this] { parts_->readSoon(); });
    connect(view, &GridView::rowPressed, this, [this](int row) { parts_->moveToRow(row); });
    connect(view, &GridView::rowDoubleClicked, this, [this](int row) {
        parts_->moveToRow(row);
        if (row == parts_->rows.current())
            emit rowDoubleClicked();
    });
    QHeaderView* const header = view->horizontalHeader();
    connect(header, &QHeaderView::sectionClicked, this, &DataGrid::titleClicked);
    connect(header, &QHeaderView::sectionResized, this, [this](int column, int, int width) {
        if (!parts_->isSettingWidth && width > 0)
            parts_->model->setWidth(column, width); // the user drags it
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
    for (int column = 0; column < columnCount(); ++column)
        parts_->resizeColumn(column, columnWidth(column));
    parts_->rows.expire();
}

int DataGrid::columnCount() const { return parts_->model->columnCount(); }

QString DataGrid::columnTitle(int column) const { return parts_->model->column(column).title; }

void DataGrid::setColumnTitle(int column, const QString& title) { parts_->model->setTitle(column, title); }

int DataGrid::columnWidth(int column) const { return parts_->model->column(column).width; }

void DataGrid::setColumnWidth(int column, int width) { parts_->resizeColumn(column, width); }

int DataGrid::clientWidth() const {
    if (layout()->isEnabled())
        layout()->activate();
    parts_->frame->layout()->activate();
    return parts_->view->viewport()->width();
}

void DataGrid::refresh() {
    Parts& parts = *parts_;
    runGuarded([&parts] {
        parts.rows.retry();
        dbase::Dataset* const table = parts.rows.table();
        if (!table || table->state() != dbase::DatasetState::Browse)
            return;
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
    for (int column = 0; column < columnCount(); ++column)
        width += std::max(0, columnWidth(column));
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
        if (event->type() != readEvent)
            return QWidget::event(event);
        parts_->isReadSoon = false;
        if (isVisible()) // else when it is shown
            parts_->read();
        return true;
    }
}

/// A click that a program sends to the grid itself is one on the part that lies there.
bool DataGrid::passOn(QMouseEvent& event) {
    QWidget* const part = childAt(event.position().toPoint());
    if (!part || parts_->isPassingOn)
        return false;
    parts_->isPassingOn = true;
    QMouseEvent copy(event.type(), part->mapFrom(this, event.position()), event.globalPosition(),
                     event.button(), event.buttons(), event.modifiers());
    const QPointer<DataGrid> alive = this;
    QCoreApplication::sendEvent(part, &copy);
    if (alive)
        parts_->isPassingOn = false;
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
        runGuarded([this] { parts_->copyRow(); });
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
        parts_->moveByKey(event->key());
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

void DataGrid::wheelEvent(QWheelEvent* event) {
    parts_->wheelRest += event->angleDelta().y() * QApplication::wheelScrollLines();
    const int count = parts_->wheelRest / wheelNotch;
    parts_->wheelRest -= count * wheelNotch;
    if (count != 0)
        parts_->scrollBy(-count);
    event->accept();
}

void DataGrid::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    // Screen readers read the table inside: it goes by the grid's name.
    parts_->view->setAccessibleName(accessibleName());
    parts_->view->setAccessibleDescription(accessibleDescription());
    parts_->readSoon();
}

} // namespace ambrel
