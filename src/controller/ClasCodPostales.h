// The postal-code controller: gives the edit boxes of a host's form their municipality, street and number
// behaviour.
#pragma once

#include <QString>
#include <Qt>
#include <cstdint>
#include <functional>
#include <memory>

#include "AmbrelExport.h"
#include "controller/Operacion.h"
#include "dbase/dataset/field.h"
#include "services/Confamb.h"

class QLineEdit;
class QObject;
class QWidget;
class TDMCodPostales;

/// Name of the province that a postal code belongs to; empty when there is none. Looks in PROVIN of database
/// "DB".
[[nodiscard]] AMBREL_EXPORT QString LocalizaProvincia(const QString& codPostal);

/// Created by a host form and wired to the events of its boxes. The municipality box's Tag holds the INE code
/// of the municipality that it names, the street box's Tag the street's `CODIGO1` as a number; 0 says that
/// the text is not validated. In every search `exact` false means nearest: the first record at or after the
/// value. A text that Windows-1252 cannot hold matches nothing.
///
/// The event handlers (KeyUp..., Exit...) do nothing without a box, and show a failure to the user;
/// everything else lets dbase::Error pass.
class AMBREL_EXPORT TClassCodPostales {
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
    /// Selects the tag; nothing when it is active already. The current municipality stays.
    void OrdenaPorNombreMunicipi();
    void OrdenaPorCodIneMunicipi();
    void OrdenaPorCodPostalMunicipi();
    /// Searches by the active tag, which must be the one of that name.
    bool BuscaPorNombreMunicipi(const QString& value, bool exact);
    bool BuscaPorCodIneMunicipi(const QString& value, bool exact);
    bool BuscaPorCodPostalMunicipi(const QString& value, bool exact);
    /// Searches by the column that the active tag orders by; false without searching for any other tag.
    bool BuscaEnMunicipi(const QString& value, bool exact);
    /// Completes the municipality box when a letter, a digit or key 44 was released.
    void KeyUpMunicipi(QLineEdit* sender, std::uint16_t& key, Qt::KeyboardModifiers shift);
    /// Fills province and postal code of a validated municipality, each only when passed in with some text.
    void ExitMunicipi(QLineEdit* sender, QString& province, QString& postalCode, bool ask);
    /// Shows the list of municipalities; true when one was chosen, which is then current under the tag that
    /// was active before.
    bool BuscarMunicipios();

    // --- Streets of the current municipality.
    /// Selects the tag VIA; nothing when it is active already. The current street stays.
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
    /// Goes to the row of the given type of a validated street; offers to add an unknown one, stored with the
    /// postal code `newPostalCode` and then shown on its card, which when accepted puts the municipality's
    /// first one for none, and, with `ask`, to choose it from the list. Writes the postal code of a street
    /// that is known in the end into the host's field, which may be null and whose dataset must be in edit.
    /// `unused` is part of the event's form.
    void ExitDireccionPostal(QLineEdit* sender, dbase::Field* postalCodeField, dbase::Field* unused, bool ask,
                             const QString& newPostalCode, const QString& type);
    /// What came of the street that was left last.
    enum class TypedStreet {
        Known,    // or nothing at all
        Unknown,  // the user did not want to do anything about it
        Added,    // it is current, if its card has not led elsewhere
        NotAdded, // it was to be, and the user was told why not
        Chosen    // another one, from the list; it is current
    };
    /// That of the last ExitDireccionPostal. The box's Tag does not tell: it is 1 after an addition, and the
    /// key of a street may be 1, too.
    [[nodiscard]] TypedStreet typedStreet() const { return typedStreet_; }

    // --- House numbers. Both begin at the current row: call BuscaEnPostal before when the number has
    // changed.
    /// Writes the postal code of the row whose range holds the number, among the rows with the current name
    /// and type.
    void ExitNumeroPostal(QLineEdit* sender, dbase::Field* postalCodeField);
    /// The variant that looks only at rows without type and returns to where it began when none holds the
    /// number.
    void ExitNumeroPostal_(QLineEdit* sender, dbase::Field* postalCodeField);

    /// Shows the list of streets; true when one was chosen, which is then current under the tag that was
    /// active before. `standalone`: begin in the host's own province, not in that of the current
    /// municipality.
    bool BuscarDireccionPostal(bool standalone);

    /// Puts POSTAL on a street of a municipality, for a stored address; MUNICIPI keeps its order.
    void SituaPrimerViaMunicipio(const QString& codIne, const QString& street, const QString& type);

    // --- Keeping the streets. Only those that users added, whose key begins with "99", may be changed. An
    // operation that fails in the engine answers false like one that was refused with a message of its own;
    // whoever works for a user then calls showStreetFailure(), which tells the former and is silent
    // otherwise: if (!controller.AceptarVia()) controller.showStreetFailure();
    /// Starts a new row for the current municipality, with open number ranges. False when it cannot.
    bool AnadirVia();
    /// Puts the current row into edit; false, with a message, when there is none or it may not be changed,
    /// and without one when another workstation holds or has changed it.
    bool ModificarVia();
    /// Deletes the current row, with `ask` after a question. `unused` has no effect. True when it is gone.
    /// Deliberate: true also for an empty table, where nothing is left to delete.
    bool BorrarVia(bool ask, bool unused = false);
    /// Stores the pending row, a new one under a key of its own. A row without name is refused and dropped.
    /// False when it was not stored; it then stays pending, save for want of a name. Who stores many asks for
    /// no wait with each and calls DM->tbPostal.sync() behind them.
    bool AceptarVia(dbase::Durability durability = Config.durability());
    /// Asks, and drops the pending row on yes; false on no.
    bool CancelarVia();
    /// Stores a pending new row under the next free key, while a lock keeps other workstations from taking
    /// it. Called by AceptarVia alone. Errors: dbase::Error; ambrel::SilentAbort when another workstation
    /// holds the lock, which the user has been told.
    bool PostInsert(dbase::Durability durability = Config.durability());
    /// Why the last of these operations failed in the engine, for the user; empty when it did not, and once
    /// it was shown.
    [[nodiscard]] const QString& streetFailure() const { return streetFailure_; }
    /// Shows that text once; nothing when there is none.
    void showStreetFailure();
    /// Opens the card of the current street; `municipality` is the name that it shows, or empty. MUNICIPI is
    /// then ordered by name, on the first municipality with the current one's postal code. What the card
    /// could not store is dropped when it has closed.
    void MuestraFichaVia(TOperacion operation, const QString& municipality);

private:
    using NumberWalk = bool (*)(TDMCodPostales& tables, int number);

    bool searchMunicipality(const char* field, const QString& value, bool exact);
    void exitNumber(const QLineEdit& box, dbase::Field* postalCodeField, NumberWalk walk);

    void goToRowOfType(const QString& street, const QString& type);
    void addTypedStreet(QLineEdit& box, const QString& postalCode, const QString& type);
    bool takeListedStreet(QLineEdit& box);
    bool attempt(const std::function<bool()>& operation);
    bool attemptOrCancel(const std::function<bool()>& operation);

    QString streetFailure_;
    TypedStreet typedStreet_ = TypedStreet::Known;
};
