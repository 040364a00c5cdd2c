// A dataset and its model, which do the same operations.
#include "support/ModelledCursor.h"

#include <gtest/gtest.h>

#include <optional>
#include <vector>

#include "dbase/system/error.h"

namespace ambrel::test {
namespace {

using dbase::Bookmark;
using dbase::ErrorCode;

template<typename Operation>
std::optional<ErrorCode> refusalOf(Operation&& operation) {
    try {
        operation();
    } catch (const dbase::Error& error) {
        return error.code();
    }
    return std::nullopt;
}

} // namespace

void ModelledCursor::open() {
    table.open();
    model.open();
}

void ModelledCursor::expectSame() {
    EXPECT_EQ(table.recordNumber(), model.record);
    EXPECT_EQ(table.isEmpty(), model.record == 0);
    EXPECT_EQ(table.bof(), model.bof);
    EXPECT_EQ(table.eof(), model.eof);
    const std::vector<std::string> texts = textsOf(model.shown);
    const std::vector<dbase::Field*> fields = table.fields();
    for (std::size_t i = 0; i < texts.size(); ++i) {
        EXPECT_EQ(fields[i]->text(), texts[i]);
    }
}

// --- Changes

void ModelledCursor::append() {
    const ModelRow row = chance_.row(shape_);
    table.append();
    setFields(table, row);
    table.post();
    model.land(stored_.append(row));
}

void ModelledCursor::edit() {
    if (model.record == 0) {
        return;
    }
    if (!model.isShownAsStored()) {
        EXPECT_EQ(refusalOf([&] { table.edit(); }), ErrorCode::RecordChanged);
        model.reposition();
        return;
    }
    table.edit();
    finishEdit();
}

void ModelledCursor::finishEdit() {
    const ModelRow row = chance_.row(shape_);
    setFields(table, row);
    if (chance_.oneIn(5)) {
        table.cancel();
        return;
    }
    table.post();
    stored_.overwrite(model.record, row);
    model.land(model.record);
}

void ModelledCursor::erase() {
    if (model.record == 0) {
        return;
    }
    if (!model.isShownAsStored()) {
        EXPECT_EQ(refusalOf([&] { table.erase(); }), ErrorCode::RecordChanged);
        return;
    }
    table.erase();
    stored_.erase(model.record);
    model.reposition();
}

// --- Moves

void ModelledCursor::walk(bool isForward, unsigned steps) {
    for (bool isOn = true; isOn && steps > 0; --steps) {
        isOn = isForward ? table.next() : table.prior();
        EXPECT_EQ(isOn, model.step(isForward));
        EXPECT_EQ(table.recordNumber(), model.record);
    }
}

void ModelledCursor::walkFromMark() {
    const Bookmark mark = table.bookmark();
    for (const bool isForward : {true, false}) {
        walk(isForward, 1 + chance_.below(40));
        EXPECT_EQ(table.goTo(mark), model.goTo(mark.record()));
    }
}

void ModelledCursor::goToEnd() {
    const bool isFirst = chance_.oneIn(2);
    isFirst ? table.first() : table.last();
    model.goToEnd(isFirst);
}

std::pair<dbase::Key, std::string> ModelledCursor::anyKey() {
    const bool isStored = stored_.recordCount() > 0 && chance_.oneIn(2);
    return chance_.key(model.tag(), isStored ? stored_.row(1 + chance_.below(stored_.recordCount()))
                                             : chance_.row(shape_));
}

void ModelledCursor::seek() {
    if (model.tag().name.empty()) {
        return;
    }
    const auto [key, text] = anyKey();
    const bool isExact = chance_.oneIn(2);
    EXPECT_EQ(table.seek(key, isExact ? dbase::SeekMode::Exact : dbase::SeekMode::Nearest),
              model.seek(text, isExact));
}

void ModelledCursor::goTo() {
    const RecordNumber record = chance_.below(stored_.recordCount() + 4);
    EXPECT_EQ(table.goTo(Bookmark(record)), model.goTo(record));
}

void ModelledCursor::keepOrReturn() {
    if (chance_.oneIn(2)) {
        kept_ = table.bookmark();
    } else {
        EXPECT_EQ(table.goTo(kept_), model.goTo(kept_.record()));
    }
}

void ModelledCursor::refresh() {
    table.refresh();
    model.reposition();
}

// --- What is shown, and in which order

void ModelledCursor::changeTag() {
    const auto& orders = stored_.orders();
    const ModelOrder& order = orders[chance_.below(static_cast<unsigned>(orders.size()))];
    table.setTag(order.tag().name);
    model.setOrder(order);
}

void ModelledCursor::changeFilter() {
    const auto& filters = modelFilters();
    const NamedFilter& filter = filters[chance_.below(static_cast<unsigned>(filters.size()))];
    table.setFilter(filter.text);
    model.setFilter(filter.test);
}

void ModelledCursor::changeRange() {
    if (model.hasRange() || model.tag().name.empty()) {
        table.clearRange();
        model.clearRange();
        return;
    }
    const auto low = anyKey(), high = anyKey();
    table.setRange(low.first, high.first);
    model.setRange(low.second, high.second);
}

} // namespace ambrel::test
