// Connects an edit box and a field.
#include "dialogs/common/BoundEdit.h"

#include <QScopedValueRollback>
#include <utility>

#include "dbase/dataset/pending.h"
#include "dbase/system/error.h"
#include "dbase/system/trim.h"
#include "services/EventGuard.h"
#include "services/Text.h"

namespace ambrel {

BoundEdit::BoundEdit(QWidget* parent) : QLineEdit(parent) {
    setReadOnly(true);
    connect(this, &QLineEdit::textChanged, this, guarded([this] { write(); }));
}

void BoundEdit::bind(dbase::DataSource& source, std::string field) {
    source_ = &source;
    sourceLife_ = source.lifetime();
    fieldName_ = std::move(field);
    subscription_ = source.listen([this](dbase::DatasetChange change) { follow(change); });
    follow(dbase::DatasetChange::Opened);
}

void BoundEdit::unbind() {
    subscription_.reset();
    source_ = nullptr;
    follow(dbase::DatasetChange::Closed);
}

/// Null if the box has nothing to show.
dbase::Field* BoundEdit::field() const {
    dbase::Dataset* const table = source_ && !sourceLife_.expired() ? source_->dataset() : nullptr;
    return table && table->isOpen() ? table->findField(fieldName_) : nullptr;
}

void BoundEdit::follow(dbase::DatasetChange change) {
    if (passing_) {
        return;
    }
    const dbase::Field* const bound = field();
    setReadOnly(!bound || !dbase::isPending(bound->dataset().state()));
    if (change == dbase::DatasetChange::State) {
        return; // a value that changes with the state is reported separately
    }
    // Another field's change leaves the box alone: it may hold text that its own field refused.
    if (change != dbase::DatasetChange::Field || !bound || bound->text() != shownValue_) {
        show(bound);
    }
}

void BoundEdit::show(const dbase::Field* field) {
    const QScopedValueRollback passing(passing_, true);
    shownValue_ = field ? field->text() : std::string();
    refused_ = false;
    if (const QString value = fromWindows1252(shownValue_); value != text()) {
        setText(value);
    }
}

void BoundEdit::write() {
    dbase::Field* const bound = field();
    if (passing_ || !bound || !dbase::isPending(bound->dataset().state())) {
        return;
    }
    const QScopedValueRollback passing(passing_, true);
    const std::string bytes = toNearestWindows1252(text());
    refused_ = dbase::withoutTrailingBlanks(bytes).size() > bound->width() || losesCharacters(text());
    try {
        bound->setText(bytes);
    } catch (const dbase::Error& error) {
        if (error.code() != dbase::ErrorCode::BadValue) {
            throw;
        }
        refused_ = true;
    }
    shownValue_ = bound->text();
}

} // namespace ambrel
