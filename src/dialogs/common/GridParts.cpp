// The parts of a data grid: when it reads, how it moves the table, what it copies.
#include "dialogs/common/GridParts.h"

#include <QApplication>
#include <QClipboard>
#include <QHBoxLayout>
#include <QScrollBar>
#include <QTimer>
#include <algorithm>
#include <chrono>

#include "dialogs/common/GridModel.h"
#include "dialogs/common/GridView.h"
#include "services/EventGuard.h"

namespace ambrel {
namespace {

constexpr int wholeBar = 1'000'000; // steps of the scroll bar; precise enough for a share of the table
constexpr std::chrono::milliseconds restBeforeLookingFurther{60};

} // namespace

const QEvent::Type gridReadEvent = static_cast<QEvent::Type>(QEvent::registerEventType());

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

/// Not at once: a program may be in the middle of a walk. Never while painting: a failure opens a box.
void DataGrid::Parts::readSoon() {
    if (!isReadSoon) {
        isReadSoon = true;
        QCoreApplication::postEvent(&grid, new QEvent(gridReadEvent), Qt::HighEventPriority);
    }
}

void DataGrid::Parts::read() {
    runGuarded([this] {
        try {
            if (rows.read(model->columns(), static_cast<std::size_t>(view->room()))) {
                show();
            }
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
    if (const auto [first, count] = rows.marked(); count > 1) {
        view->showMarked(static_cast<int>(first), static_cast<int>(count));
    }
    showOrder();
    showPlace();
    if (rows.isCut()) {
        further->start();
    } else {
        further->stop();
    }
}

void DataGrid::Parts::showOrder() {
    const dbase::Dataset* const table = rows.table();
    const auto& columns = model->columns();
    const auto found = std::ranges::find_if(columns, [&](const GridColumn& column) {
        return table && std::ranges::find(column.tags, table->tag()) != column.tags.end();
    });
    view->showOrder(found == columns.end() ? -1 : static_cast<int>(found - columns.begin()));
}

void DataGrid::Parts::showPlace() {
    if (bar->isSliderDown()) {
        return; // the user is dragging it
    }
    const bool showsAll = rows.showsBegin() && rows.showsEnd();
    const int page =
        std::clamp(static_cast<int>((rows.lastPlace() - rows.firstPlace()) * wholeBar), 1, wholeBar / 2);
    const int end = showsAll ? 0 : wholeBar - page;
    bar->setRange(0, end);
    bar->setPageStep(page);
    bar->setEnabled(!showsAll);
    if (rows.showsBegin()) {
        bar->setValue(0);
    } else if (rows.showsEnd()) {
        bar->setValue(end);
    } else {
        bar->setValue(std::clamp(static_cast<int>(rows.firstPlace() * wholeBar), 1, std::max(1, end - 1)));
    }
}

// --- Moving

void DataGrid::Parts::move(const std::function<void(dbase::Dataset&)>& how) {
    rows.dropMark();
    tryToMove(how);
}

void DataGrid::Parts::moveAndMark(const std::function<void(dbase::Dataset&)>& how, MarkedRows::Side leaves) {
    tryToMove([&](dbase::Dataset& table) { rows.mark([&] { how(table); }, leaves); });
}

void DataGrid::Parts::tryToMove(const std::function<void(dbase::Dataset&)>& how) {
    read();
    runGuarded([&] {
        dbase::Dataset* const table = rows.table();
        if (!table) {
            return;
        }
        try {
            how(*table);
        } catch (...) {
            try {
                rows.expire();
                rows.read(model->columns(), static_cast<std::size_t>(view->room()));
            } catch (const std::exception&) {
                // Most likely the same failure; the first one is the one to report.
            }
            show();
            throw;
        }
    });
    read();
}

void DataGrid::Parts::moveByKey(int key, GridMarks marks) {
    const auto how = [&](dbase::Dataset& table) {
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
    };
    using Side = MarkedRows::Side;
    if (marks == GridMarks::No) {
        move(how);
    } else {
        moveAndMark(how, key == Qt::Key_Home ? Side::After : key == Qt::Key_End ? Side::Before : Side::Here);
    }
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
    if (position <= bar->minimum()) {
        moveByKey(Qt::Key_Home);
    } else if (position >= bar->maximum()) {
        moveByKey(Qt::Key_End);
    } else {
        move([&](dbase::Dataset& table) {
            rows.moveToPlace(table, static_cast<double>(position) / wholeBar);
        });
    }
}

void DataGrid::Parts::moveToRow(int row, GridMarks marks) {
    const auto how = [&](dbase::Dataset& table) { rows.moveToRow(table, row); };
    if (marks == GridMarks::No) {
        move(how);
    } else {
        moveAndMark(how);
    }
}

void DataGrid::Parts::scrollBy(int count) {
    move([&](dbase::Dataset& table) {
        rows.keepPlace();
        rows.moveBy(table, count);
    });
}

void DataGrid::Parts::copy(GridTitles titles) {
    read();
    std::vector<GridColumn> seen = model->columns();
    std::erase_if(seen, [](const GridColumn& column) { return column.width <= 0; });
    const std::vector<QStringList> texts = rows.markedTexts(seen);
    if (!texts.empty()) {
        QApplication::clipboard()->setText(gridText(seen, texts, titles));
    } else if (rows.current() >= 0) { // the row where marking began was deleted by another user
        QApplication::beep();
        rows.dropMark();
    }
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

} // namespace ambrel
