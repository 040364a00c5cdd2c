// Texts of the findings.
#include "host/audit/FindingsModel.h"

#include <array>

#include "host/GroupedNumber.h"

namespace host {
namespace {

using namespace ambrel::directory;

QString severityText(ambrel::directory::Severity severity) {
    using enum ambrel::directory::Severity;
    return severity == Grave     ? FindingsModel::tr("Grave")
           : severity == Warning ? FindingsModel::tr("Aviso")
                                 : FindingsModel::tr("Nota");
}

QString rowText(const Finding& finding) {
    const QString table = windowText(tableName(finding.table));
    return finding.record == 0 ? table : table + QLatin1Char(' ') + groupedNumber(finding.record);
}

} // namespace

QString windowText(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

void FindingsModel::clear() {
    beginResetModel();
    findings_.clear();
    shown_.clear();
    endResetModel();
}

void FindingsModel::append(const std::vector<Finding>& findings) {
    std::vector<std::uint32_t> added;
    for (const Finding& finding : findings) {
        if (isShown(finding)) {
            added.push_back(static_cast<std::uint32_t>(findings_.size()));
        }
        findings_.push_back(finding);
    }
    if (!added.empty()) {
        const int first = rowCount();
        beginInsertRows({}, first, first + static_cast<int>(added.size()) - 1);
        shown_.insert(shown_.end(), added.begin(), added.end());
        endInsertRows();
    }
}

void FindingsModel::setFilter(std::optional<FindingClass> kind) {
    if (kind == filter_) {
        return;
    }
    beginResetModel();
    filter_ = kind;
    shown_.clear();
    for (std::size_t i = 0; i < findings_.size(); ++i) {
        if (isShown(findings_[i])) {
            shown_.push_back(static_cast<std::uint32_t>(i));
        }
    }
    endResetModel();
}

int FindingsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(shown_.size());
}

int FindingsModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : columnCountOfModel;
}

QVariant FindingsModel::data(const QModelIndex& index, int role) const {
    const Finding& shown = finding(index.row());
    if (role == Qt::ToolTipRole) {
        return windowText(shown.text) + QLatin1Char('\n') + windowText(classMeaning(shown.kind));
    }
    if (role != Qt::DisplayRole) {
        return {};
    }
    switch (index.column()) {
    case Severity:
        return severityText(shown.severity);
    case Row:
        return rowText(shown);
    case Text:
        return windowText(shown.text);
    default:
        return windowText(shown.proposal);
    }
}

QVariant FindingsModel::headerData(int section, Qt::Orientation orientation, int role) const {
    static const std::array<QString, columnCountOfModel> titles{tr("Gravedad"), tr("Fila"), tr("Hallazgo"),
                                                                tr("Propuesta")};
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
        return {};
    }
    return titles.at(static_cast<std::size_t>(section));
}

} // namespace host
