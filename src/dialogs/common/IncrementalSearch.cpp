// The search of the list dialogs.
#include "dialogs/common/IncrementalSearch.h"

#include <QLineEdit>

#include "dbase/dataset/go_to.h"
#include "dialogs/common/DataGrid.h"
#include "services/KeyCodes.h"
#include "services/Text.h"

namespace ambrel {
namespace {

void step(std::uint16_t key, dbase::Dataset& table) {
    switch (key) {
    case key_code::pageUp:
        table.first();
        break;
    case key_code::pageDown:
        table.last();
        break;
    case key_code::up:
        table.prior();
        break;
    default:
        table.next();
    }
}

} // namespace

void searchWhileTyping(QLineEdit& edit, std::uint16_t key, dbase::Dataset& table, const std::string& keyField,
                       DataGrid& grid) {
    removeLeadingBlanks(edit);
    if (moveByKey(key, table, grid) || !table.isOpen() || edit.text().isEmpty()) {
        return;
    }
    const auto text = toWindows1252(edit.text());
    if (!text) {
        return;
    }
    dbase::goToNearest(table, {{keyField, *text}});
    grid.refresh();
}

bool moveByKey(std::uint16_t key, dbase::Dataset& table, DataGrid& grid) {
    if (key != key_code::pageUp && key != key_code::pageDown && key != key_code::up &&
        key != key_code::down) {
        return false;
    }
    if (table.isOpen()) {
        step(key, table);
        grid.refresh();
    }
    return true;
}

void removeLeadingBlanks(QLineEdit& edit) {
    const QString text = edit.text();
    int blanks = 0;
    while (blanks < text.size() && text[blanks] == QLatin1Char(' ')) {
        ++blanks;
    }
    if (blanks == 0) {
        return;
    }
    const auto moved = [blanks](int position) { return qMax(0, position - blanks); };
    const int caret = moved(edit.cursorPosition());
    const bool hasSelection = edit.hasSelectedText();
    const int start = moved(edit.selectionStart()), end = moved(edit.selectionEnd());
    edit.setText(text.mid(blanks));
    edit.setCursorPosition(caret);
    if (hasSelection && start < end) { // the caret is at one end of the selection
        edit.setSelection(caret == start ? end : start, caret == start ? start - end : end - start);
    }
}

} // namespace ambrel
