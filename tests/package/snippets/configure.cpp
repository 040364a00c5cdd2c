#include <string>

#include "package/AmbCodPostales.h"

// What the host knows by itself.
void configure(const std::string& folder) {
    Config.setDatabase("CLIENTES", folder); // "DB" and "CLIENTES" stand for the folder from now on
    Config.setProvince(28, "MADRID", "MADRID");
    Config.setMunicipality(3, "MADRID");
    Config.EntidadesMenores = false;
}

// What the user has written into a file. dbase::Error names a line that is not understood, and nothing has
// changed then.
void configureFrom(const std::string& iniFile) { Config.loadIni(iniFile); }
