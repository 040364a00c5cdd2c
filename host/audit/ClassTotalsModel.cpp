// Counts and texts of the classes.
#include "host/audit/ClassTotalsModel.h"

#include <algorithm>

#include "host/GroupedNumber.h"
#include "host/audit/FindingsModel.h"

namespace host {

using namespace ambrel::directory;

void ClassTotalsModel::clear() {
    beginResetModel();
    counts_ = {};
    classes_.clear();
    endResetModel();
}

void ClassTotalsModel::setCounts(const ClassCounts& counts) {
    counts_ = counts;
    for (std::size_t i = 0; i < findingClassCount; ++i) {
        const auto kind = static_cast<FindingClass>(i);
        const auto place = std::ranges::lower_bound(classes_, kind);
        const bool hasAny = std::ranges::any_of(counts.at(i), [](std::uint64_t n) { return n > 0; });
        if (hasAny && (place == classes_.end() || *place != kind)) {
            const int row = 1 + static_cast<int>(place - classes_.begin());
            beginInsertRows({}, row, row);
            classes_.insert(place, kind);
            endInsertRows();
        }
    }
    Q_EMIT dataChanged(index(0, Grave), index(rowCount() - 1, Note));
}

std::optional<FindingClass> ClassTotalsModel::kind(int row) const {
    return row > 0 ? std::optional(classes_.at(static_cast<std::size_t>(row - 1))) : std::nullopt;
}

int ClassTotalsModel::rowOf(std::optional<FindingClass> kind) const {
    const auto place = kind ? std::ranges::find(classes_, *kind) : classes_.end();
    return place == classes_.end() ? 0 : 1 + static_cast<int>(place - classes_.begin());
}

int ClassTotalsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : 1 + static_cast<int>(classes_.size());
}

int ClassTotalsModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : columnCountOfModel;
}

std::uint64_t ClassTotalsModel::count(int row, std::size_t severity) const {
    if (const auto one = kind(row)) {
        return counts_.at(static_cast<std::size_t>(*one)).at(severity);
    }
    std::uint64_t all = 0;
    for (const auto& ofClass : counts_) {
        all += ofClass.at(severity);
    }
    return all;
}

QVariant ClassTotalsModel::data(const QModelIndex& index, int role) const {
    const auto shown = kind(index.row());
    const bool isCount = index.column() >= Grave && index.column() <= Note;
    if (role == Qt::TextAlignmentRole && isCount) {
        return QVariant(Qt::AlignRight | Qt::AlignVCenter);
    }
    if (role == Qt::ToolTipRole && shown) {
        return windowText(classMeaning(*shown));
    }
    if (role != Qt::DisplayRole) {
        return {};
    }
    if (index.column() == Class) {
        return shown ? windowText(classTitle(*shown)) : tr("Todos los hallazgos");
    }
    if (index.column() == Advice) {
        return shown ? windowText(classAdvice(*shown)) : QString();
    }
    const std::uint64_t number = count(index.row(), static_cast<std::size_t>(index.column() - Grave));
    return number == 0 ? QStringLiteral("–") : groupedNumber(number);
}

QVariant ClassTotalsModel::headerData(int section, Qt::Orientation orientation, int role) const {
    static const std::array<QString, columnCountOfModel> titles{tr("Clase"), tr("Graves"), tr("Avisos"),
                                                                tr("Notas"), tr("Qué hacer")};
    if (orientation != Qt::Horizontal) {
        return {};
    }
    if (role == Qt::TextAlignmentRole && section >= Grave && section <= Note) {
        return QVariant(Qt::AlignRight | Qt::AlignVCenter);
    }
    return role == Qt::DisplayRole ? QVariant(titles.at(static_cast<std::size_t>(section))) : QVariant();
}

} // namespace host
