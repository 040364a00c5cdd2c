// Weighing the difference between two names.
#include "address/NameDoubt.h"

#include "address/Doubts.h"

namespace ambrel {

double nameDoubt(const NameLikeness& likeness) {
    using Kind = NameLikeness::Kind;
    if (likeness.kind == Kind::Same) {
        return 0;
    }
    if (likeness.kind == Kind::Writing) {
        return doubt::writing;
    }
    double sum = likeness.kind == Kind::Part ? doubt::part : 0;
    if (likeness.slips > 0) {
        const auto length = likeness.letters;
        sum += length >= doubt::longName && likeness.shortest >= doubt::shortName        ? doubt::slipInLong
               : length >= doubt::shortName && likeness.shortest >= doubt::shortName - 1 ? doubt::slipInShort
                                                                                         : doubt::slipInTiny;
        sum += doubt::secondSlip * (likeness.slips - 1);
        sum += likeness.isInflected ? doubt::inflection : 0;
    }
    return sum;
}

} // namespace ambrel
