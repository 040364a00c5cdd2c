// Any bytes as the host's INI file.
#include "Trial.h"
#include "dbase/system/error.h"
#include "services/ConfigReader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const trial::NamedBytes file;
    file.put({reinterpret_cast<const char*>(data), size});
    try {
        const ambrel::ConfigValues values = ambrel::readConfig(file.path());
        trial::require(!values.alias || values.folder);
        trial::require(!values.folder || values.folder->find('\0') == std::string::npos);
        trial::require(!values.directoryServer || values.directoryServer->starts_with("http"));
        trial::require(values.province.value_or(0) >= 0 && values.municipality.value_or(0) >= 0);
    } catch (const dbase::Error& error) {
        trial::require(error.code() == dbase::ErrorCode::BadValue);
    }
    return 0;
}
