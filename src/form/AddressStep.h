// A change of several boxes of an address by one choice, which undo and redo take as one step.
#pragma once

#include <QString>
#include <array>
#include <optional>

#include "data/Municipality.h"
#include "dbase/dataset/dataset.h"

namespace ambrel {

/// The boxes at one moment, and what was known of their texts. Not installed: internal to AddressBoxes.
struct AddressSnapshot {
    std::array<QString, 6> texts;
    QString rest;
    std::array<bool, 6> isChanged{}, isTried{};
    std::optional<Municipality> municipality;
    dbase::Bookmark municipalityRow;
    QString streetMunicipality;
    int streetTag = 0;
    bool isNameShared = false, isTypeKnown = false, isProvinceTyped = false, isCodeTyped = false;
};

/// The boxes before and after a choice made in one of them. The toolkit undoes it in that box; the others
/// follow.
struct AddressStep {
    AddressSnapshot before;
    std::optional<AddressSnapshot> after; // once it has been made
    bool isUndone = false;
};

} // namespace ambrel
