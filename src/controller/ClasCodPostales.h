// The postal-code controller: gives the edit boxes of a host's form their municipality, street and number
// behaviour.
#pragma once

#include <QString>
#include <Qt>
#include <cstdint>
#include <memory>

#include "dbase/field.h"

class QLineEdit;
class QObject;
class QWidget;
class TDMCodPostales;

/// Name of the province that a postal code belongs to; empty when there is none. Looks in PROVIN of database
/// "DB".
[[nodiscard]] QString LocalizaProvincia(const QString& codPostal);

/// Created by a host form and wired to the events of its boxes. The municipality box's Tag holds the INE code
/// of the municipality that it names, the street box's Tag the street's `CODIGO1` as a number; 0 says that
/// the text is not validated. In every search `exact` false means nearest: the first record at or after the
/// value. A text that Windows-1252 cannot hold matches nothing.
///
/// The event handlers (KeyUp..., Exit...) show a failure to the user; everything else lets dbase::Error pass.
class TClassCodPostales {
public:
    /// Opens MUNICIPI by name and POSTAL by street. The owner is the host's component for which the
    /// controller works; the data module belongs to the controller alone. Errors: dbase::Error for a table
    /// that cannot be opened.
    explicit TClassCodPostales(QObject* owner = nullptr);
    ~TClassCodPostales();
    TClassCodPostales(const TClassCodPostales&) = delete;
    TClassCodPostales& operator=(const TClassCodPostales&) = delete;

    /// Owner of the dialogs that the controller opens; the host assigns it, and may leave it null.
    QWidget* Padre = nullptr;
    std::unique_ptr<TDMCodPostales> DM;

    /// A text of `count` blanks; empty for 0 or less.
    [[nodiscard]] static QString space(int count);

    // --- Municipalities.
    void OrdenaPorNombreMunicipi();
    void OrdenaPorCodIneMunicipi();
    void OrdenaPorCodPostalMunicipi();
    bool BuscaPorNombreMunicipi(const QString& value, bool exact);
    bool BuscaPorCodIneMunicipi(const QString& value, bool exact);
    bool BuscaPorCodPostalMunicipi(const QString& value, bool exact);
    /// Searches by the column that the active tag orders by; false without searching for any other tag.
    bool BuscaEnMunicipi(const QString& value, bool exact);
    /// Completes the municipality box when a letter, a digit or key 44 was released.
    void KeyUpMunicipi(QLineEdit* sender, std::uint16_t& key, Qt::KeyboardModifiers shift);
    /// Fills province and postal code of a validated municipality, each only when passed in with some text.
    void ExitMunicipi(QLineEdit* sender, QString& province, QString& postalCode, bool ask);

    // --- Streets of the current municipality.
    void OrdenaPorViaPostal();
    /// BuscaPorViaPostal while POSTAL is ordered by street; otherwise false without searching.
    bool BuscaEnPostal(const QString& street, const QString& type, bool exact);
    /// Seeks name and type, and where the row reached has another name, the name without type; the result is
    /// that of the first search. In a municipality with one postal code, a row with another code is left for
    /// the first row.
    bool BuscaPorViaPostal(const QString& street, const QString& type, bool exact);
    /// Completes the street box when a letter, a digit or key 188 (comma) was released.
    void KeyUpDireccionPostal(QLineEdit* sender, std::uint16_t& key, Qt::KeyboardModifiers shift,
                              const QString& type);
    /// Goes to the row of the given type of a validated street and writes its postal code into the host's
    /// field, which may be null and whose dataset must be in edit. `unused`, `ask` and `newPostalCode` are
    /// part of the event's form.
    void ExitDireccionPostal(QLineEdit* sender, dbase::Field* postalCodeField, dbase::Field* unused, bool ask,
                             const QString& newPostalCode, const QString& type);

    // --- House numbers. Both begin at the current row: call BuscaEnPostal before when the number has
    // changed.
    /// Writes the postal code of the row whose range holds the number, among the rows with the current name
    /// and type.
    void ExitNumeroPostal(QLineEdit* sender, dbase::Field* postalCodeField);
    /// The variant that looks only at rows without type and returns to where it began when none holds the
    /// number.
    void ExitNumeroPostal_(QLineEdit* sender, dbase::Field* postalCodeField);

    /// Puts POSTAL on a street of a municipality, for a stored address; MUNICIPI keeps its order.
    void SituaPrimerViaMunicipio(const QString& codIne, const QString& street, const QString& type);

private:
    using NumberWalk = bool (*)(TDMCodPostales& tables, int number);

    void orderMunicipalitiesBy(const char* tag);
    bool searchMunicipality(const char* field, const QString& value, bool exact);
    void exitNumber(const QLineEdit& box, dbase::Field* postalCodeField, NumberWalk walk);
};
