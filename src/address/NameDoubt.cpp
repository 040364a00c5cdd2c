// Weighing the difference between two names.
#include "address/NameDoubt.h"

#include <algorithm>

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
        sum +=
            doubt::slips * likeness.slips / static_cast<double>(std::max<std::size_t>(likeness.letters, 1));
        sum += doubt::furtherSlip * (likeness.slips - 1);
        sum += likeness.shortest <= doubt::tiny ? doubt::tinyWord : 0;
    }
    return sum;
}

} // namespace ambrel
