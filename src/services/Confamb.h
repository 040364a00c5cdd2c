// The host's configuration, as the package reads it. Texts are Windows-1252, folders UTF-8.
#pragma once

#include <string>

#include "AmbrelExport.h"
#include "dbase/system/durability.h"

namespace ambrel {

/// Where the street-directory service is, and how it wants to be spoken to.
struct DirectoryService {
    std::string server = "http://ovc.catastro.meh.es";        // scheme and host
    std::string actionPrefix = "http://tempuri.org";          // of its SOAP actions
    std::string xmlNamespace = "http://www.catastro.meh.es/"; // of requests and answers
};

} // namespace ambrel

/// The host fills it with the setters or from an INI file; the package only reads it.
class AMBREL_EXPORT TConfig {
public:
    /// The host's own province: its number, its name, and the form of its name by which streets are searched.
    [[nodiscard]] int GetProvin() const { return province_; }
    [[nodiscard]] const std::string& GetProvin2() const { return provinceName_; }
    [[nodiscard]] const std::string& GetProvin3() const { return provinceOfStreets_; }
    /// The host's own municipality.
    [[nodiscard]] const std::string& GetsMunicipio() const { return municipality_; }
    [[nodiscard]] int GetnMunicipio() const { return municipalityCode_; }
    /// Database name of the host application; "DB" until the host gives another.
    [[nodiscard]] const std::string& GetAliasAmbrel() const { return alias_; }
    /// Folder of the tables of a database name. Errors: dbase::Error(NotFound) for a name without folder.
    [[nodiscard]] std::string DatabasePath(const std::string& alias) const;

    /// Whether minor population entities are shown.
    bool EntidadesMenores = false;

    /// Whether a street that was accepted is safe from a power cut at once, at the price of a wait for the
    /// disk. Without it the last ones before the cut may be missing; the tables are whole either way.
    bool AsegurarEnDisco = true;
    /// The same for those who post.
    [[nodiscard]] dbase::Durability durability() const {
        return AsegurarEnDisco ? dbase::Durability::Disk : dbase::Durability::Process;
    }

    /// The public service until the host gives another.
    ambrel::DirectoryService directoryService;

    /// The host's own province and municipality, as the getters give them.
    void setProvince(int code, std::string name, std::string nameOfStreets);
    void setMunicipality(int code, std::string name);
    /// Names the host's database; "DB" and the alias both stand for the folder from now on.
    void setDatabase(std::string alias, const std::string& folder);

    /// Reads a file in UTF-8; what it does not name stays as it is:
    ///
    ///     ; A comment stands on a line of its own, as does one that begins with #.
    ///     [BaseDeDatos]
    ///     Alias=AMBREL
    ///     ; Relative to the file's own folder; needed with Alias.
    ///     Carpeta=datos
    ///     [Provincia]
    ///     Codigo=28
    ///     Nombre=MADRID
    ///     ; The name when there is none.
    ///     NombreEnVias=MADRID
    ///     [Municipio]
    ///     Codigo=3
    ///     Nombre=MADRID
    ///     [Opciones]
    ///     ; si, no
    ///     EntidadesMenores=no
    ///     AsegurarEnDisco=si
    ///     [Callejero]
    ///     Servidor=http://ovc.catastro.meh.es
    ///     Accion=http://tempuri.org
    ///     EspacioDeNombres=http://www.catastro.meh.es/
    ///
    /// Errors: dbase::Error(NotFound) for a file that cannot be read, dbase::Error(BadValue) that names the
    /// line for anything not understood; nothing has changed then.
    void loadIni(const std::string& path);

private:
    int province_ = 0;
    std::string provinceName_, provinceOfStreets_;
    int municipalityCode_ = 0;
    std::string municipality_;
    std::string alias_ = "DB";
};

/// The one that the package reads.
extern AMBREL_EXPORT TConfig Config;
