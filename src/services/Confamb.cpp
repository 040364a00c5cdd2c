// The host's configuration.
#include "services/Confamb.h"

#include <utility>

#include "dbase/system/databases.h"
#include "services/ConfigReader.h"

TConfig Config;

namespace {

/// Database name under which the package opens its tables, whatever the host calls its database.
constexpr const char* packageDatabase = "DB";

} // namespace

std::string TConfig::DatabasePath(const std::string& alias) const { return dbase::databaseFolder(alias); }

void TConfig::setProvince(int code, std::string name, std::string nameOfStreets) {
    province_ = code;
    provinceName_ = std::move(name);
    provinceOfStreets_ = std::move(nameOfStreets);
}

void TConfig::setMunicipality(int code, std::string name) {
    municipalityCode_ = code;
    municipality_ = std::move(name);
}

void TConfig::setDatabase(std::string alias, const std::string& folder) {
    dbase::setDatabaseFolder(packageDatabase, folder);
    dbase::setDatabaseFolder(alias, folder);
    alias_ = std::move(alias);
}

void TConfig::loadIni(const std::string& path) {
    const ambrel::ConfigValues values = ambrel::readConfig(path);
    if (values.folder) {
        setDatabase(values.alias.value_or(alias_), *values.folder);
    }
    setProvince(values.province.value_or(province_), values.provinceName.value_or(provinceName_),
                values.provinceOfStreets.value_or(values.provinceName.value_or(provinceOfStreets_)));
    setMunicipality(values.municipality.value_or(municipalityCode_),
                    values.municipalityName.value_or(municipality_));
    EntidadesMenores = values.minorEntities.value_or(EntidadesMenores);
    AsegurarEnDisco = values.securesOnDisk.value_or(AsegurarEnDisco);
    directoryService.server = values.directoryServer.value_or(directoryService.server);
    directoryService.actionPrefix = values.actionPrefix.value_or(directoryService.actionPrefix);
    directoryService.xmlNamespace = values.xmlNamespace.value_or(directoryService.xmlNamespace);
}
