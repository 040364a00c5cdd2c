// The data module of a postal-code controller: municipalities and streets.
#pragma once

#include "AmbrelExport.h"
#include "data/TableDefinitions.h"
#include "dbase/dataset/dataset.h"

/// Owns the tables that one controller works on. The constructor opens `tbMunicipiAux` and the destructor
/// closes it; the users of the other tables open and close them. Errors of the constructor: anything that
/// prevents MUNICIPI from being opened (dbase::Error).
class AMBREL_EXPORT TDMCodPostales {
public:
    /// `database`: the name under which the folder of the tables is registered.
    explicit TDMCodPostales(const std::string& database = "DB");
    ~TDMCodPostales();
    TDMCodPostales(const TDMCodPostales&) = delete;
    TDMCodPostales& operator=(const TDMCodPostales&) = delete;

    /// Browsing cursor; minor entities are hidden unless the configuration asks for them.
    dbase::Dataset tbMunicipi;
    dbase::Field& tbMunicipiCOD_INE = tbMunicipi.bindCharacter("COD_INE", 5);
    dbase::Field& tbMunicipiCODPOSTAL = tbMunicipi.bindCharacter("CODPOSTAL", 5);
    dbase::Field& tbMunicipiUNICO = tbMunicipi.bindCharacter("UNICO", 1);
    dbase::Field& tbMunicipiNOMBRE = tbMunicipi.bindCharacter("NOMBRE", ambrel::municipalityNameWidth);
    dbase::Field& tbMunicipiCAPITAL = tbMunicipi.bindCharacter("CAPITAL", 1);
    dbase::Field& tbMunicipiCOD_PROV = tbMunicipi.bindCharacter("COD_PROV", 2);
    dbase::Field& tbMunicipiCOD_MUN = tbMunicipi.bindCharacter("COD_MUN", 4);
    dbase::Field& tbMunicipiENT_MENOR = tbMunicipi.bindLogical("ENT_MENOR");
    dbase::Field& tbMunicipiCOD_MUNMJ = tbMunicipi.bindCharacter("COD_MUNMJ", 3);
    dbase::Field& tbMunicipiNOM_MUNICI = tbMunicipi.bindCharacter("NOM_MUNICI", 30);
    dbase::Field& tbMunicipiNOMBRE_COMPLETO =
        tbMunicipi.addCalculated("NOMBRE_COMPLETO", ambrel::wholeNameWidth);

    /// The street directory.
    dbase::Dataset tbPostal;
    dbase::Field& tbPostalCODIGO1 = tbPostal.bindCharacter("CODIGO1", 8);
    dbase::Field& tbPostalPROVINCIA = tbPostal.bindCharacter("PROVINCIA", 2);
    dbase::Field& tbPostalCAPITAL = tbPostal.bindCharacter("CAPITAL", 1);
    dbase::Field& tbPostalTIPO_VIA = tbPostal.bindCharacter("TIPO_VIA", ambrel::streetTypeWidth);
    dbase::Field& tbPostalVIA = tbPostal.bindCharacter("VIA", ambrel::streetNameWidth);
    dbase::Field& tbPostalIMPAR_INI = tbPostal.bindInteger("IMPAR_INI");
    dbase::Field& tbPostalIMPAR_FIN = tbPostal.bindInteger("IMPAR_FIN");
    dbase::Field& tbPostalPAR_INI = tbPostal.bindInteger("PAR_INI");
    dbase::Field& tbPostalPAR_FIN = tbPostal.bindInteger("PAR_FIN");
    dbase::Field& tbPostalCODPOSTAL = tbPostal.bindCharacter("CODPOSTAL", 5);

    /// Second, unfiltered cursor, used to calculate `NOMBRE_COMPLETO`.
    dbase::Dataset tbMunicipiAux;
};

/// Declared for the host and always null: each controller has a module of its own.
extern AMBREL_EXPORT TDMCodPostales* DMCodPostales;
