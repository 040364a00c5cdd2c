#include "host/RecordBinding.h"

#include <QLineEdit>
#include <QScopedValueRollback>
#include <algorithm>

#include "services/EventGuard.h"
#include "services/Text.h"

namespace host {
namespace {

bool isPending(const dbase::Dataset& table) {
    return table.state() == dbase::DatasetState::Edit || table.state() == dbase::DatasetState::Insert;
}

} // namespace

RecordBinding::RecordBinding(dbase::Dataset& table, QObject* parent) : QObject(parent), table_(table) {
    subscription_ = table.listen([this](dbase::DatasetChange change) { follow(change); });
}

void RecordBinding::bind(QLineEdit* box, dbase::Field& field) {
    bonds_.push_back({box, &field, {}});
    const std::size_t index = bonds_.size() - 1;
    connect(box, &QLineEdit::textChanged, this, [this, index] {
        if (!showing_)
            write(bonds_[index]);
    });
}

void RecordBinding::write(const Bond& bond) {
    const QScopedValueRollback writing(writing_, true);
    if (!beginEdit())
        return;
    ambrel::runGuarded([&] { bond.field->setText(ambrel::toNearestWindows1252(bond.box->text())); });
    emit changed();
}

void RecordBinding::follow(dbase::DatasetChange change) {
    if (change != dbase::DatasetChange::Field || writing_ || showing_)
        return;
    const QScopedValueRollback showing(showing_, true);
    for (const Bond& bond : bonds_) {
        const QString text = ambrel::fromWindows1252(bond.field->text());
        if (bond.box->text() != text)
            bond.box->setText(text);
    }
    emit changed();
}

void RecordBinding::showRow() {
    {
        const QScopedValueRollback showing(showing_, true);
        for (const Bond& bond : bonds_)
            bond.box->setText(ambrel::fromWindows1252(bond.field->text()));
    }
    emit rowShown();
    emit changed();
}

bool RecordBinding::beginEdit() {
    if (isPending(table_))
        return true;
    bool done = false;
    ambrel::runGuarded([&] {
        if (table_.isEmpty())
            table_.append();
        else
            table_.edit();
        done = true;
    });
    if (done) {
        rememberValues();
        emit changed();
    } else {
        ambrel::runGuarded([&] { table_.refresh(); });
        showRow();
    }
    return done;
}

void RecordBinding::beginNew() {
    table_.append();
    rememberValues();
    showRow();
}

void RecordBinding::rememberValues() {
    for (Bond& bond : bonds_)
        bond.before = bond.field->text();
}

bool RecordBinding::hasChanges() const {
    return isPending(table_) &&
           std::ranges::any_of(bonds_, [](const Bond& bond) { return bond.field->text() != bond.before; });
}

void RecordBinding::endUnchangedEdit() {
    if (table_.state() != dbase::DatasetState::Edit || hasChanges())
        return;
    table_.cancel();
    emit changed();
}

} // namespace host
