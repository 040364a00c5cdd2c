// The data module of the street-type routines.
#pragma once

#include "AmbrelExport.h"
#include "dbase/dataset/data_source.h"
#include "dbase/dataset/dataset.h"

/// Owns the street-type table; its users open and close it.
class AMBREL_EXPORT TDMVias {
public:
    /// `database`: the name under which the folder of the table is registered.
    explicit TDMVias(const std::string& database = "DB");
    TDMVias(const TDMVias&) = delete;
    TDMVias& operator=(const TDMVias&) = delete;

    /// The street types.
    dbase::Dataset tbTipo_Via;
    dbase::Field& tbTipo_ViaCODIGO = tbTipo_Via.bindCharacter("CODIGO", 2);
    dbase::Field& tbTipo_ViaNOMBRE = tbTipo_Via.bindCharacter("NOMBRE", 15);
    dbase::Field& tbTipo_ViaNOMBRE_CAT = tbTipo_Via.bindCharacter("NOMBRE_CAT", 15);
    dbase::DataSource dsTipo_Via;
};

/// The module of the street-type routine now running; null between runs.
extern AMBREL_EXPORT TDMVias* DMVias;
