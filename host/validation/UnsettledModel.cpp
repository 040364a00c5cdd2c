// Texts of the rows that are not settled.
#include "host/validation/UnsettledModel.h"

#include <QStringList>
#include <array>

#include "address/VerdictTexts.h"
#include "host/GroupedNumber.h"
#include "services/Text.h"

namespace host {
namespace {

QString textOf(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

QString nearest(const ambrel::JudgedAddress& judged) {
    if (judged.alternatives.empty()) {
        return ambrel::fromWindows1252(judged.reason);
    }
    const ambrel::AddressAlternative& one = judged.alternatives.front();
    QStringList street{ambrel::fromWindows1252(one.type), ambrel::fromWindows1252(one.street)};
    QStringList place;
    if (one.postalCodes.size() == 1) {
        place << ambrel::fromWindows1252(one.postalCodes.front());
    }
    place << ambrel::fromWindows1252(one.municipality);
    street.removeAll(QString());
    QStringList parts{street.join(' '), place.join(' ')};
    parts.removeAll(QString());
    return parts.join(QStringLiteral(", "));
}

} // namespace

QString titleOf(ambrel::Verdict verdict) { return textOf(ambrel::verdictTitle(verdict)); }

void UnsettledModel::clear() {
    beginResetModel();
    rows_.clear();
    shown_.clear();
    endResetModel();
}

void UnsettledModel::append(const std::vector<UnsettledRow>& rows) {
    std::vector<std::size_t> added;
    for (const UnsettledRow& row : rows) {
        if (isShown(row)) {
            added.push_back(rows_.size());
        }
        rows_.push_back(row);
    }
    if (!added.empty()) {
        const int first = rowCount();
        beginInsertRows({}, first, first + static_cast<int>(added.size()) - 1);
        shown_.insert(shown_.end(), added.begin(), added.end());
        endInsertRows();
    }
}

void UnsettledModel::setFilter(std::optional<ambrel::Verdict> verdict) {
    beginResetModel();
    filter_ = verdict;
    shown_.clear();
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        if (isShown(rows_[i])) {
            shown_.push_back(i);
        }
    }
    endResetModel();
}

int UnsettledModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(shown_.size());
}

int UnsettledModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : columnCountOfModel;
}

QVariant UnsettledModel::data(const QModelIndex& index, int role) const {
    const UnsettledRow& shown = row(index.row());
    if (role == Qt::ToolTipRole) {
        return textOf(ambrel::verdictMeaning(shown.judged.verdict)) + QLatin1Char('\n') + shown.given;
    }
    if (role != Qt::DisplayRole) {
        return {};
    }
    switch (index.column()) {
    case Row:
        return groupedNumber(shown.number);
    case Verdict:
        return titleOf(shown.judged.verdict);
    case Given:
        return shown.given;
    default:
        return nearest(shown.judged);
    }
}

QVariant UnsettledModel::headerData(int section, Qt::Orientation orientation, int role) const {
    static const std::array<QString, columnCountOfModel> titles{tr("Fila"), tr("Veredicto"),
                                                                tr("Dirección dada"), tr("La más parecida")};
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
        return {};
    }
    return titles.at(static_cast<std::size_t>(section));
}

} // namespace host
