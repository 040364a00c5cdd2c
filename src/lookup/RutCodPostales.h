// Lookups for hosts: street types, provinces and municipalities by code or name, with a list if the text does
// not determine the answer, and the line of an address.
//
// Texts that Windows-1252 cannot hold match nothing. Unless stated otherwise, the dbase::Error of a table
// that cannot be opened reaches the caller.
#pragma once

#include <QString>

#include "AmbrelExport.h"

class QWidget;

namespace dbase {
class Dataset;
}

// --- Street types.

/// Name of a street type (in Catalan if requested), cut before its first comma; empty if there is none. For
/// an empty or unknown abbreviation, and only with `ask`, the user may choose from the list.
/// Deliberate: the result is then the abbreviation chosen, not its name. Failures are shown to the user.
[[nodiscard]] AMBREL_EXPORT QString Tipo_Via(const QString& abbreviation, bool ask, bool catalan);

/// Writes the whole name of a street type into `name`. For an empty or unknown abbreviation the user is asked
/// and may choose from the list.
/// Deliberate: the result is the abbreviation chosen from the list, empty if no choice was needed. Failures
/// are shown to the user.
AMBREL_EXPORT QString Tipo_Via2(QString& name, const QString& abbreviation);

/// Abbreviation of the street type with exactly this name; empty if there is none. Failures are shown to the
/// user.
[[nodiscard]] AMBREL_EXPORT QString Tipo_ViaPorNombre(const QString& name);

/// Whole name of a street type; the abbreviation is taken as it is, blanks included. Empty if there is none.
[[nodiscard]] AMBREL_EXPORT QString Nombre_Via(const QString& abbreviation);

// --- Address line.

/// One line from the columns TIPO_VIA, DOMICILIO, NUMERO, PISO, CODPOSTAL and VECINDAD of a host table's
/// current record. `width` below 0 keeps the columns' blanks and writes NÚMERO before the number; above 0 the
/// line is padded or cut to exactly that many characters. Postal code and locality are appended if their
/// argument is exactly 1. `typeIsName`: TIPO_VIA holds the type's name, not its abbreviation.
[[nodiscard]] AMBREL_EXPORT QString Domicilio(dbase::Dataset& table, int width, int withLocality,
                                              int withPostalCode, bool typeIsName);

// --- Municipalities. These return true if one was determined.

/// Shows the list of municipalities in the order of `tag` ("COD_INE", "CODPOSTAL", "NOMBRE"), starting at the
/// value passed in for that tag. Without an answer no argument changes.
[[nodiscard]] AMBREL_EXPORT bool IMunicipios(QWidget* owner, QString& codIne, QString& postalCode,
                                             QString& name, QString& provinceName, QString& provinceCode,
                                             QString& municipalityNumber, const QString& tag,
                                             const QString& caption);

/// The same with the alternative list, starting at `name`.
[[nodiscard]] AMBREL_EXPORT bool IMunicipiosMJ(QWidget* owner, QString& provinceCode, QString& name,
                                               QString& provinceName, const QString& caption);

/// Resolves a name that only one municipality has, without asking, with its first postal code; shows the list
/// for any other. Deliberate: without an answer the arguments keep the first of several municipalities.
[[nodiscard]] AMBREL_EXPORT bool IBuscaMunicipio(QString& name, QString& codIne, QString& postalCode,
                                                 QString& capital, const QString& caption);

/// The same with the alternative list; of several municipalities with the name, takes the one in the province
/// passed in (a code of one or two digits). `range`: the list shows only those with the name.
/// Deliberate: the last name in the order counts as shared.
[[nodiscard]] AMBREL_EXPORT bool IBuscaMunicipioMJ(QString& name, QString& provinceCode,
                                                   QString& municipalityCode, const QString& caption,
                                                   bool range);

// --- Provinces.

/// Three-character code ("0" and two digits) of the province of a postal code, and its name. The cursor is
/// one on MUNICIPI and keeps its tag. Needs DMMunicipi.
[[nodiscard]] AMBREL_EXPORT QString LocalizaProvincia(dbase::Dataset& municipalities,
                                                      const QString& postalCode, QString& provinceName);

/// Lets the user choose a province (group 1) or country; `initialCode` 0 shows all of them. Returns its code.
/// Without an answer: the host's own province, with group 0.
AMBREL_EXPORT int SeleccionaProvincia(QString& name, int& group, const QString& caption,
                                      const QString& heading, int initialCode);
