// Walks over the rows of a dataset. Each row becomes the current one while it is looked at; range and filter
// hide rows as ever.
#pragma once

#include "dbase/dataset/dataset.h"

namespace dbase {

/// Walks from the current row on, as long as `goesOn` holds, to the first row that is wanted. True on that
/// row. Otherwise false, with the row current that ended the walk: the first for which `goesOn` does not
/// hold, or the last of the table.
template<typename GoesOn, typename IsWanted>
bool walkTo(Dataset& table, GoesOn goesOn, IsWanted isWanted) {
    for (bool isRow = !table.isEmpty(); isRow && goesOn(); isRow = table.next()) {
        if (isWanted()) {
            return true;
        }
    }
    return false;
}

/// The same, on to the end of the table if need be.
template<typename IsWanted>
bool walkTo(Dataset& table, IsWanted isWanted) {
    return walkTo(
        table, [] { return true; }, isWanted);
}

/// Visits the rows from the current one on, as long as `goesOn` holds.
template<typename GoesOn, typename Visit>
void forEachRowWhile(Dataset& table, GoesOn goesOn, Visit visit) {
    for (bool isRow = !table.isEmpty(); isRow && goesOn(); isRow = table.next()) {
        visit();
    }
}

/// Visits every row, from the first one.
template<typename Visit>
void forEachRow(Dataset& table, Visit visit) {
    table.first();
    forEachRowWhile(
        table, [] { return true; }, visit);
}

} // namespace dbase
