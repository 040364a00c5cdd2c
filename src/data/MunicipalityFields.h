// The fields of the MUNICIPI cursor that supplies the name of an entity's municipality.
#pragma once

#include "dbase/dataset/dataset.h"

namespace ambrel {

/// Binds the fields so that a foreign table is refused for a column it lacks rather than for its tags.
inline void bindMunicipalityFields(dbase::Dataset& municipalities) {
    municipalities.bindCharacter("COD_INE", 5);
    municipalities.bindCharacter("CODPOSTAL", 5);
    municipalities.bindLogical("ENT_MENOR");
}

} // namespace ambrel
