#include <QLineEdit>
#include <QStringList>

#include "package/AmbCodPostales.h"

// Suggests the customers whose names contain what is typed into a box.
void suggestCustomers(QLineEdit* box, const QStringList& customers) {
    const auto find = [customers](const QString& text, ambrel::SuggestionList::Occasion) {
        ambrel::SuggestionList::Rows rows;
        for (const QString& name : customers.filter(text, Qt::CaseInsensitive)) {
            const auto first = static_cast<int>(name.indexOf(text, 0, Qt::CaseInsensitive));
            rows.push_back({.name = name, .marks = {{first, static_cast<int>(text.size())}}});
        }
        return rows;
    };
    new ambrel::SuggestionList(box, find);
}
