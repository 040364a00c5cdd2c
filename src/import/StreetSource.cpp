// The default behaviour of a source of streets.
#include "import/StreetSource.h"

namespace ambrel {

PlaceList StreetSource::municipalities(const QString&) { return {}; }

FoundStreets StreetSource::find(const QString&, const QString&) { return {}; }

HostPlaceName StreetSource::hostPlace(const QString& place, const QString& municipality) const {
    return {.province = place, .municipality = municipality};
}

MunicipalityEnd StreetSource::file(const QString&, const QString&) { return MunicipalityEnd::NoAnswer; }

} // namespace ambrel
