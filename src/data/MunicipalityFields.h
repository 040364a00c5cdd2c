// By what the cursor on MUNICIPI knows its table, from which the name of an entity's municipality is taken.
#pragma once

#include "dbase/dataset/dataset.h"

namespace ambrel {

/// So that a table of somebody else is refused for a column that it lacks, and not for its tags.
inline void bindMunicipalityFields(dbase::Dataset& municipalities) {
    municipalities.bindCharacter("COD_INE", 5);
    municipalities.bindCharacter("CODPOSTAL", 5);
    municipalities.bindLogical("ENT_MENOR");
}

} // namespace ambrel
