// The data module of the municipality routines: municipalities, provinces and the alternative municipality
// list.
#pragma once

#include "AmbrelExport.h"
#include "data/TableDefinitions.h"
#include "dbase/dataset/data_source.h"
#include "dbase/dataset/dataset.h"

/// Owns the tables that one municipality search works on. The constructor opens `tbMunicipiAux` and the
/// destructor closes it; the users of the other tables open and close them. Errors of the constructor:
/// anything that prevents MUNICIPI from being opened (dbase::Error).
class AMBREL_EXPORT TDMMunicipi {
public:
    /// `database`: the name under which the folder of the tables is registered.
    explicit TDMMunicipi(const std::string& database = "DB");
    ~TDMMunicipi();
    TDMMunicipi(const TDMMunicipi&) = delete;
    TDMMunicipi& operator=(const TDMMunicipi&) = delete;

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
    dbase::Field& tbMunicipiNOMBRE_COMPLETO =
        tbMunicipi.addCalculated("NOMBRE_COMPLETO", ambrel::wholeNameWidth);
    dbase::DataSource dsMunicipi;

    /// Provinces and countries.
    dbase::Dataset tbProvin;
    dbase::Field& tbProvinPROVINCIA = tbProvin.bindCharacter("PROVINCIA", 21);
    dbase::Field& tbProvinCODIGO = tbProvin.bindCharacter("CODIGO", 3);
    dbase::Field& tbProvinCOD_198 = tbProvin.bindCharacter("COD_198", 3);
    dbase::Field& tbProvinGRUPO = tbProvin.bindInteger("GRUPO");

    /// Second, unfiltered cursor, used to calculate `NOMBRE_COMPLETO`.
    dbase::Dataset tbMunicipiAux;

    /// The alternative municipality list.
    dbase::Dataset tbMunicipiMJ;
    dbase::Field& tbMunicipiMJPROVCOD = tbMunicipiMJ.bindCharacter("PROVCOD", 10);
    dbase::Field& tbMunicipiMJPOBLCOD = tbMunicipiMJ.bindCharacter("POBLCOD", 10);
    dbase::Field& tbMunicipiMJPOBLLITE = tbMunicipiMJ.bindCharacter("POBLLITE", 41);
    dbase::Field& tbMunicipiMJNOMBREPROV = tbMunicipiMJ.addCalculated("NOMBREPROV", 21);
    dbase::DataSource dsMunicipiMJ;

    /// Cursor used to calculate `NOMBREPROV`; closed between records.
    dbase::Dataset tbProvinAux;
    dbase::Field& tbProvinAuxPROVINCIA = tbProvinAux.bindCharacter("PROVINCIA", 21);

private:
    void calculateProvinceName();
};

/// The module of the municipality routine now running; null between runs.
extern AMBREL_EXPORT TDMMunicipi* DMMunicipi;
