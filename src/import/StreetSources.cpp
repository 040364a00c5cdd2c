// Creates the sources of streets that the import dialog offers.
#include "import/StreetSources.h"

#include "import/MunicipalityFileSource.h"
#include "import/MunicipalitySource.h"
#include "import/ProvinceSource.h"

namespace ambrel {

std::vector<std::unique_ptr<StreetSource>> streetSources(const SourceTools& tools) {
    std::vector<std::unique_ptr<StreetSource>> sources;
    sources.push_back(std::make_unique<MunicipalityFileSource>(tools));
    sources.push_back(std::make_unique<MunicipalitySource>(tools));
    sources.push_back(std::make_unique<ProvinceSource>(tools));
    return sources;
}

} // namespace ambrel
