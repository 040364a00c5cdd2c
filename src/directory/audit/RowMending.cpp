// Repairs rows as their findings propose.
#include "directory/audit/RowMending.h"

#include "dbase/system/trim.h"
#include "directory/audit/MunicipalityAudit.h"
#include "directory/audit/NameFaults.h"
#include "directory/audit/StreetRowAudit.h"

namespace ambrel::directory {

namespace {

class Mending {
public:
    explicit Mending(const std::set<FindingClass>& wanted) : wanted_(wanted) {}

    /// Letters first: capitals and blanks are those of the right letters.
    void name(const std::string& column, const std::string& name) {
        std::string mended = name;
        const auto broken = findBrokenLetters(mended);
        if (broken && broken->isCertain() && takes(FindingClass::BrokenLetters)) {
            mended = broken->likely;
        }
        const auto rest = findBrokenLetters(mended); // capitals would make what is left of UTF-8 unreadable
        if (hasSmallLetters(mended) && !(rest && rest->wasUtf8) && takes(FindingClass::SmallLetters)) {
            mended = inCapitals(mended);
        }
        if (hasNeedlessBlanks(mended) && takes(FindingClass::NeedlessBlanks)) {
            mended = withoutNeedlessBlanks(mended);
        }
        change(column, name, mended);
    }

    void range(const std::string& side, int first, int last, bool isOdd) {
        if (isPlainlyReversed(first, last, isOdd) && takes(FindingClass::ReversedRange)) {
            change(side + "_INI", std::to_string(first), std::to_string(last));
            change(side + "_FIN", std::to_string(last), std::to_string(first));
        }
    }

    /// `to`: empty if that is not certain.
    void code(FindingClass kind, const std::string& column, const std::string& from, const std::string& to) {
        if (!to.empty() && takes(kind)) {
            change(column, from, to);
        }
    }

    [[nodiscard]] MendedRow done() { return std::move(row_); }

private:
    bool takes(FindingClass kind) {
        if (!wanted_.contains(kind)) {
            return false;
        }
        row_.kinds.insert(kind);
        return true;
    }
    void change(const std::string& column, const std::string& from, const std::string& to) {
        if (from != to) {
            row_.changes.push_back({column, from, to});
        }
    }

    const std::set<FindingClass>& wanted_;
    MendedRow row_;
};

} // namespace

MendedRow mendStreet(const StreetRow& row, const PlaceBook& book, const std::set<FindingClass>& kinds) {
    Mending mending(kinds);
    mending.name("VIA", row.name);
    mending.range("IMPAR", row.oddFirst, row.oddLast, true);
    mending.range("PAR", row.evenFirst, row.evenLast, false);
    const auto place = book.placeOf(row);
    if (hasWrongProvince(row, place, book)) {
        const std::string right = rightProvince(row, place, book);
        mending.code(FindingClass::WrongProvince, "PROVINCIA", row.province, right);
    }
    if (hasWrongCapital(row, place, book)) {
        const auto capital = book.capitalOf(row);
        mending.code(!row.capital.empty()   ? FindingClass::ForeignCapital
                     : isCancelledCard(row) ? FindingClass::CancelledCard
                                            : FindingClass::BlankCapital,
                     "CAPITAL", row.capital, capital ? std::string(1, *capital) : std::string());
    }
    return mending.done();
}

MendedRow mendMunicipality(const MunicipalityRow& row, const PlaceBook& book,
                           const std::set<FindingClass>& kinds) {
    Mending mending(kinds);
    mending.name("NOMBRE", row.name);
    const auto place = book.placeOfIne(row.ineCode);
    if (place && hasWrongSingleMark(row, book.places()[*place])) {
        mending.code(FindingClass::SingleCodeMark, "UNICO", row.singleMark,
                     std::string(1, singleMarkOf(book.places()[*place])));
    }
    return mending.done();
}

void NameRepairs::note(const MunicipalityRow& row, const PlaceBook& book,
                       const std::set<FindingClass>& kinds) {
    const auto place = book.placeOfIne(row.ineCode);
    Mending mending(kinds);
    mending.name("NOMBRE", row.name);
    const MendedRow mended = mending.done();
    if (place && !mended.changes.empty()) {
        repairs_.try_emplace({*place, row.name}, Repair{row.name, mended.changes.front().to, mended.kinds});
    }
}

std::optional<NameRepairs::Repair> NameRepairs::of(PlaceNumber place, std::string_view copy,
                                                   std::size_t width) const {
    for (auto one = repairs_.lower_bound({place, std::string(copy)});
         one != repairs_.end() && one->first.first == place && one->first.second.starts_with(copy); ++one) {
        const std::string& name = one->first.second;
        if (name.size() == copy.size() || dbase::withoutTrailingBlanks(name.substr(0, width)) == copy) {
            Repair repair = one->second;
            repair.to = dbase::withoutTrailingBlanks(std::string_view(repair.to).substr(0, width));
            return repair;
        }
    }
    return std::nullopt;
}

} // namespace ambrel::directory
