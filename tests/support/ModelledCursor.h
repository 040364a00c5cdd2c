// A dataset and a model of it that do the same random operations: every answer is compared.
#pragma once

#include <string>
#include <utility>

#include "dbase/dataset/dataset.h"
#include "support/CursorModel.h"
#include "support/ModelRows.h"

namespace ambrel::test {

/// Works on MODELO of database "DB" and on the model of its contents, which other cursors may share.
/// A difference between the two fails the test.
class ModelledCursor {
public:
    ModelledCursor(TableModel& stored, const ModelShape& shape, Chance& chance)
        : model(stored), stored_(stored), shape_(shape), chance_(chance) {}

    dbase::Dataset table{"DB", "MODELO"};
    CursorModel model;

    void open();
    /// Compares position, ends and every field.
    void expectSame();

    // --- Changes
    void append();
    void edit();
    /// Ends the pending edit.
    void finishEdit();
    void erase();

    // --- Moves
    void step() { walk(chance_.oneIn(2), 1 + chance_.below(4)); }
    /// Moves this number of steps, or fewer where the rows end.
    void walk(bool isForward, unsigned steps);
    void walkFromMark();
    void goToEnd();
    void seek();
    void goTo();
    void keepOrReturn();
    void refresh();

    // --- What is shown, and in which order
    void changeTag();
    void changeFilter();
    void changeRange();

private:
    /// A key of the active tag, for the dataset and for the model; often one that is stored.
    [[nodiscard]] std::pair<dbase::Key, std::string> anyKey();

    TableModel& stored_;
    const ModelShape& shape_;
    Chance& chance_;
    dbase::Bookmark kept_;
};

} // namespace ambrel::test
