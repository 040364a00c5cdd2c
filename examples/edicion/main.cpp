// Brings tables up to an edition of the official street directory, as ambcp callejero cargar does, and says
// what it changed, municipality by municipality (UTF-8).
#include <cstdio>
#include <exception>
#include <string>

#include "dbase/codepage.h"
#include "dbase/databases.h"
#include "directory/OfficialDirectory.h"

using namespace ambrel::directory;

int main(int argc, char** argv) {
    if (argc != 5) {
        std::fprintf(stderr, "uso: edicion CARPETA TRAMOS VIAS MUNICIPIOS.csv\n");
        return 2;
    }
    try {
        dbase::setDatabaseFolder("DB", argv[1]);
        const LoadedEdition edition =
            loadEdition({.files = {.stretches = argv[2], .streets = argv[3], .municipalities = argv[4]}});
        for (const auto& [place, counts] : edition.summary.byMunicipality) {
            const std::string name = dbase::CodePage::windows1252().toUtf8(counts.name);
            std::printf("%05u;%s;%llu;%llu;%llu\n", place, name.c_str(),
                        static_cast<unsigned long long>(counts.comes),
                        static_cast<unsigned long long>(counts.goes),
                        static_cast<unsigned long long>(counts.changes));
        }
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "edicion: %s\n", error.what());
        return 2;
    }
}
