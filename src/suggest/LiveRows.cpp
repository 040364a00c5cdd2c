// Reading the rows of a suggestion.
#include "suggest/LiveRows.h"

#include "dbase/dataset/row_walk.h"
#include "dbase/lock/read_scope.h"

namespace ambrel::suggest {

void LiveRows::add(std::optional<LiveStreet>& found, bool& hasOwn, const std::string& province,
                   std::string_view name, std::string_view type, const Judge& judge) {
    const dbase::ReadScope scope;
    if (!streets_.isOpen()) {
        streets_.open();
        ineCode_ = streets_.findField("COD_INE");
    }
    if (!streets_.seek({{"PROVINCIA", province}, {"VIA", std::string(name)}}, dbase::SeekMode::Exact)) {
        return;
    }
    const auto isNamed = [&] { return province_.view() == province && name_.view() == name; };
    dbase::forEachRowWhile(streets_, isNamed, [&] {
        if (type_.view() != type) {
            return;
        }
        const Belongs belongs = judge({postalCode_.text(), ineCode_ ? ineCode_->text() : std::string()});
        if (belongs == Belongs::No || (hasOwn && belongs != Belongs::WithOwnCode)) {
            return;
        }
        if (!found || (!hasOwn && belongs == Belongs::WithOwnCode)) {
            found = LiveStreet{key_.text(), {}};
        }
        hasOwn = hasOwn || belongs == Belongs::WithOwnCode;
        if (const std::string code = postalCode_.text(); !code.empty()) {
            found->postalCodes.insert(code);
        }
    });
}

} // namespace ambrel::suggest
