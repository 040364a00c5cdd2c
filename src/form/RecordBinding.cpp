// Passes texts between the boxes of a form and the host's row.
#include "form/RecordBinding.h"

#include <QLineEdit>
#include <QScopedValueRollback>
#include <algorithm>

#include "dbase/dataset/pending.h"
#include "dbase/system/trim.h"
#include "services/EventGuard.h"
#include "services/Text.h"

namespace ambrel {

namespace {

/// What was pasted may hold line breaks, which an edit box shows as blanks.
QString inOneLine(QString text) {
    std::ranges::replace_if(
        text, [](QChar letter) { return letter.isSpace() && letter != QChar::Nbsp; }, QLatin1Char(' '));
    return text;
}

} // namespace

RecordBinding::RecordBinding(dbase::Dataset& table, QObject* parent) : QObject(parent), table_(table) {
    subscription_ = table.listen([this](dbase::DatasetChange change) { follow(change); });
}

void RecordBinding::bind(QLineEdit* box, dbase::Field& field) {
    bonds_.push_back({box, &field, {}});
    const std::size_t index = bonds_.size() - 1;
    connect(box, &QLineEdit::textChanged, this, [this, index] {
        if (!showing_) {
            write(bonds_[index]);
        }
    });
}

void RecordBinding::write(const Bond& bond) {
    const QScopedValueRollback writing(writing_, true);
    if (!beginEdit()) {
        return;
    }
    runGuarded([&] { bond.field->setText(toNearestWindows1252(inOneLine(bond.box->text()))); });
    Q_EMIT changed();
}

void RecordBinding::follow(dbase::DatasetChange change) {
    if (change != dbase::DatasetChange::Field || writing_ || showing_) {
        return;
    }
    const QScopedValueRollback showing(showing_, true);
    for (const Bond& bond : bonds_) {
        const QString text = fromWindows1252(bond.field->text());
        if (bond.box->text() != text) {
            bond.box->setText(text);
        }
    }
    Q_EMIT changed();
}

void RecordBinding::showRow() {
    {
        const QScopedValueRollback showing(showing_, true);
        for (const Bond& bond : bonds_) {
            bond.box->setText(fromWindows1252(bond.field->text()));
        }
    }
    Q_EMIT rowShown();
    Q_EMIT changed();
}

bool RecordBinding::beginEdit() {
    if (dbase::isPending(table_.state())) {
        return true;
    }
    bool done = false;
    runGuarded([&] {
        if (table_.isEmpty()) {
            table_.append();
        } else {
            table_.edit();
        }
        done = true;
    });
    if (done) {
        rememberValues();
        Q_EMIT changed();
    } else {
        runGuarded([&] { table_.refresh(); });
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
    for (Bond& bond : bonds_) {
        bond.before = bond.field->text();
    }
}

bool RecordBinding::hasChanges() const {
    return dbase::isPending(table_.state()) &&
           std::ranges::any_of(bonds_, [](const Bond& bond) { return bond.field->text() != bond.before; });
}

QLineEdit* RecordBinding::cutBox() const {
    const auto isCut = [](const Bond& bond) {
        const std::string whole = toNearestWindows1252(bond.box->text());
        // Losing trailing blanks does not matter.
        return dbase::withoutTrailingBlanks(whole).size() > bond.field->width();
    };
    const auto cut = std::ranges::find_if(bonds_, isCut);
    return cut != bonds_.end() ? cut->box : nullptr;
}

QLineEdit* RecordBinding::unstorableBox() const {
    const auto found =
        std::ranges::find_if(bonds_, [](const Bond& bond) { return losesCharacters(bond.box->text()); });
    return found != bonds_.end() ? found->box : nullptr;
}

void RecordBinding::endUnchangedEdit() {
    if (table_.state() != dbase::DatasetState::Edit || hasChanges()) {
        return;
    }
    table_.cancel();
    Q_EMIT changed();
}

} // namespace ambrel
