// Holds the rows of the import's list of streets.
#include "import/StreetModel.h"

#include <array>
#include <utility>

#include "services/Rnumcad.h"
#include "services/Text.h"

namespace ambrel {
namespace {

enum Column { Type, Name, PostalCode, OddFirst, OddLast, EvenFirst, EvenLast };
constexpr int columnsWithRanges = 7, columnsWithout = 2;

// Deliberate: the title of the last odd number repeats that of the first one.
constexpr std::array<const char16_t*, columnsWithRanges> titles{
    u"Tipo de vía", u"Nombre de la vía", u"Código postal", u"Impar INI",
    u"Impar INI",   u"Par INI",          u"Par FIN"};

QString numberText(int number) { return number == 0 ? QString() : QString::number(number); }

QString cellText(const ImportedStreet& street, int column) {
    switch (column) {
    case Type:
        return fromWindows1252(street.type);
    case Name:
        return fromWindows1252(street.name);
    case PostalCode:
        return fromWindows1252(street.postalCode);
    case OddFirst:
        return numberText(street.oddFirst);
    case OddLast:
        return numberText(street.oddLast);
    case EvenFirst:
        return numberText(street.evenFirst);
    case EvenLast:
        return numberText(street.evenLast);
    default:
        return {};
    }
}

bool hasName(const ImportedStreet& street) { return !withoutBlanks(street.name).empty(); }

} // namespace

StreetModel::StreetModel(QObject* parent) : QAbstractTableModel(parent), streets_(1) {}

void StreetModel::showRanges(bool show) {
    if (show == hasRanges_) {
        return;
    }
    if (show) {
        beginInsertColumns({}, columnsWithout, columnsWithRanges - 1);
    } else {
        beginRemoveColumns({}, columnsWithout, columnsWithRanges - 1);
    }
    hasRanges_ = show;
    if (show) {
        endInsertColumns();
    } else {
        endRemoveColumns();
    }
}

void StreetModel::clear() {
    beginResetModel();
    streets_.assign(1, ImportedStreet());
    endResetModel();
}

void StreetModel::append(std::vector<ImportedStreet> streets) {
    beginResetModel();
    streets_.reserve(streets_.size() + streets.size());
    for (ImportedStreet& street : streets) {
        if (hasName(streets_.front())) {
            streets_.push_back(std::move(street));
        } else {
            streets_.back() = std::move(street);
        }
    }
    endResetModel();
}

void StreetModel::move(int row, int to) {
    // Qt expects the row before which to insert; moving down, that is the one after the target.
    if (row == to || !beginMoveRows({}, row, row, {}, to > row ? to + 1 : to)) {
        return;
    }
    const ImportedStreet street = streets_[static_cast<std::size_t>(row)];
    streets_.erase(streets_.begin() + row);
    streets_.insert(streets_.begin() + to, street);
    endMoveRows();
}

int StreetModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(streets_.size());
}

int StreetModel::columnCount(const QModelIndex& parent) const {
    if (parent.isValid()) {
        return 0;
    }
    return hasRanges_ ? columnsWithRanges : columnsWithout;
}

QVariant StreetModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) {
        return {};
    }
    if (role == Qt::TextAlignmentRole && index.column() >= OddFirst) {
        return QVariant::fromValue(Qt::Alignment(Qt::AlignRight | Qt::AlignVCenter));
    }
    if (role != Qt::DisplayRole) {
        return {};
    }
    return cellText(streets_[static_cast<std::size_t>(index.row())], index.column());
}

QVariant StreetModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal) {
        return {};
    }
    if (role == Qt::TextAlignmentRole) {
        return QVariant::fromValue(
            Qt::Alignment((section >= OddFirst ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter));
    }
    if (role == Qt::DisplayRole && section < columnsWithRanges) {
        return QString::fromUtf16(titles[static_cast<std::size_t>(section)]);
    }
    return {};
}

} // namespace ambrel
