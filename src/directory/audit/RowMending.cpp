// Repairs rows as their findings propose.
#include "directory/audit/RowMending.h"

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
        if (broken && broken->isCertain && takes(FindingClass::BrokenLetters)) {
            mended = broken->likely;
        }
        const auto rest = findBrokenLetters(mended); // capitals would make what is left of UTF-8 unreadable
        if (hasSmallLetters(mended) && !(rest && rest->isCertain) && takes(FindingClass::SmallLetters)) {
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

    void mark(FindingClass kind, const std::string& column, const std::string& from, char to) {
        if (takes(kind)) {
            change(column, from, std::string(1, to));
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
    const auto capital = book.capitalOf(row);
    if (row.capital.empty() && capital) {
        mending.mark(isCancelledCard(row) ? FindingClass::CancelledCard : FindingClass::BlankCapital,
                     "CAPITAL", "", *capital);
    }
    return mending.done();
}

MendedRow mendMunicipality(const MunicipalityRow& row, const PlaceBook& book,
                           const std::set<FindingClass>& kinds) {
    Mending mending(kinds);
    mending.name("NOMBRE", row.name);
    const auto place = book.placeOfIne(row.ineCode);
    if (place && hasWrongSingleMark(row, book.places()[*place])) {
        mending.mark(FindingClass::SingleCodeMark, "UNICO", row.singleMark,
                     singleMarkOf(book.places()[*place]));
    }
    return mending.done();
}

} // namespace ambrel::directory
