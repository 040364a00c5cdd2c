// The host's configuration, as the package reads it. Texts are Windows-1252, folders UTF-8.
#pragma once

#include <string>

#include "AmbrelExport.h"
#include "dbase/system/durability.h"

namespace ambrel {

/// Address of the street-directory service and the names its protocol uses.
struct DirectoryService {
    std::string server = "http://ovc.catastro.meh.es";        // scheme and host
    std::string actionPrefix = "http://tempuri.org";          // of its SOAP actions
    std::string xmlNamespace = "http://www.catastro.meh.es/"; // of requests and answers
};

} // namespace ambrel

/// Filled by the host, with the setters or from an INI file; the package only reads it.
class AMBREL_EXPORT TConfig {
public:
    /// The host's own province: its number, its name, and the form of the name used for street searches.
    [[nodiscard]] int GetProvin() const { return province_; }
    [[nodiscard]] const std::string& GetProvin2() const { return provinceName_; }
    [[nodiscard]] const std::string& GetProvin3() const { return provinceOfStreets_; }
    /// The host's own municipality.
    [[nodiscard]] const std::string& GetsMunicipio() const { return municipality_; }
    [[nodiscard]] int GetnMunicipio() const { return municipalityCode_; }
    /// Database name of the host application; "DB" until the host sets another.
    [[nodiscard]] const std::string& GetAliasAmbrel() const { return alias_; }
    /// Folder of a database's tables. Errors: dbase::Error(NotFound) for a name without a folder.
    [[nodiscard]] std::string DatabasePath(const std::string& alias) const;

    /// Whether minor population entities are shown.
    bool EntidadesMenores = false;

    /// Whether an accepted street is safe from a power cut at once, at the price of a wait for the disk.
    /// Otherwise the last streets before the cut may be missing; the tables are sound either way.
    bool AsegurarEnDisco = true;
    /// The same setting as the durability to post with.
    [[nodiscard]] dbase::Durability durability() const {
        return AsegurarEnDisco ? dbase::Durability::Disk : dbase::Durability::Process;
    }

    /// The public service until the host sets another.
    ambrel::DirectoryService directoryService;

    /// Set the host's own province and municipality, which the getters return.
    void setProvince(int code, std::string name, std::string nameOfStreets);
    void setMunicipality(int code, std::string name);
    /// Names the host's database; from then on both "DB" and the alias stand for the folder.
    void setDatabase(std::string alias, const std::string& folder);

    /// Reads a UTF-8 file; settings that it does not name stay as they are:
    ///
    ///     ; A comment has a line of its own; # begins one too.
    ///     [BaseDeDatos]
    ///     Alias=AMBREL
    ///     ; Relative to the file's own folder; needed with Alias.
    ///     Carpeta=datos
    ///     [Provincia]
    ///     Codigo=28
    ///     Nombre=MADRID
    ///     ; Nombre if not given.
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
    /// Errors: dbase::Error(NotFound) for a file that cannot be read; dbase::Error(BadValue), which names the
    /// line, for anything not understood. On error nothing has changed.
    void loadIni(const std::string& path);

private:
    int province_ = 0;
    std::string provinceName_, provinceOfStreets_;
    int municipalityCode_ = 0;
    std::string municipality_;
    std::string alias_ = "DB";
};

/// The configuration that the package reads.
extern AMBREL_EXPORT TConfig Config;
