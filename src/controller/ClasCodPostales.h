// The postal-code controller: gives the edit boxes of a host's form their behaviour as municipality, street
// and number boxes.
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

namespace ambrel {
class StreetGroup;
}

/// Name of the province that a postal code belongs to; empty if there is none. Looks it up in PROVIN of
/// database "DB".
[[nodiscard]] AMBREL_EXPORT QString LocalizaProvincia(const QString& codPostal);

/// Created by a host form and wired to the events of its boxes. The municipality box's Tag holds the INE code
/// of the municipality it names, the street box's Tag the street's `CODIGO1` as a number; 0 means that the
/// text is not validated. In every search, `exact` false means nearest: the first record at or after the
/// value. A text that Windows-1252 cannot hold matches nothing.
///
/// The event handlers (KeyUp..., Exit...) do nothing without a box and show failures to the user; all other
/// functions let dbase::Error pass.
class AMBREL_EXPORT TClassCodPostales {
public:
    /// Opens MUNICIPI by name and POSTAL by street. `owner`: the host's component that the controller works
    /// for; the data module belongs to the controller alone. Errors: dbase::Error for a table that cannot be
    /// opened.
    explicit TClassCodPostales(QObject* owner = nullptr);
    ~TClassCodPostales();
    TClassCodPostales(const TClassCodPostales&) = delete;
    TClassCodPostales& operator=(const TClassCodPostales&) = delete;

    /// Owner of the dialogs that the controller opens; set by the host, may be null.
    QWidget* Padre = nullptr;
    std::unique_ptr<TDMCodPostales> DM;

    /// A text of `count` blanks; empty for 0 or less.
    [[nodiscard]] static QString space(int count);

    // --- Municipalities.
    /// Selects the tag; does nothing if it is active already. The current municipality stays.
    void OrdenaPorNombreMunicipi();
    void OrdenaPorCodIneMunicipi();
    void OrdenaPorCodPostalMunicipi();
    /// Searches by the active tag, which must match the function's name.
    bool BuscaPorNombreMunicipi(const QString& value, bool exact);
    bool BuscaPorCodIneMunicipi(const QString& value, bool exact);
    bool BuscaPorCodPostalMunicipi(const QString& value, bool exact);
    /// Searches by the column that the active tag orders by; false without searching for any other tag.
    bool BuscaEnMunicipi(const QString& value, bool exact);
    /// Completes the municipality box when a letter, a digit or key 44 has been released.
    void KeyUpMunicipi(QLineEdit* sender, std::uint16_t& key, Qt::KeyboardModifiers shift);
    /// Fills in province and postal code of a validated municipality, each only if some text is passed in.
    void ExitMunicipi(QLineEdit* sender, QString& province, QString& postalCode, bool ask);
    /// Shows the list of municipalities; true if one was chosen, which is then current under the previously
    /// active tag.
    bool BuscarMunicipios();

    // --- Streets of the current municipality.
    /// Selects the tag VIA; does nothing if it is active already. The current street stays.
    void OrdenaPorViaPostal();
    /// BuscaPorViaPostal if POSTAL is ordered by street; otherwise returns false without searching.
    bool BuscaEnPostal(const QString& street, const QString& type, bool exact);
    /// Seeks name and type and, if the row reached has another name, the name without type; returns the
    /// result of the first search. In a municipality with one postal code, a row with another code is
    /// rejected in favour of the first row.
    bool BuscaPorViaPostal(const QString& street, const QString& type, bool exact);
    /// Completes the street box when a letter, a digit or key 188 (comma) has been released.
    void KeyUpDireccionPostal(QLineEdit* sender, std::uint16_t& key, Qt::KeyboardModifiers shift,
                              const QString& type);
    /// For a validated street, goes to the row of the given type. For an unknown one, offers to add it,
    /// stored with the postal code `newPostalCode` and then shown on its card (accepting the card replaces an
    /// empty code with the municipality's first one), and, with `ask`, to choose one from the list. Writes
    /// the postal code of the street known in the end into the host's field, which may be null and whose
    /// dataset must be in edit. `unused` is part of the event's signature.
    void ExitDireccionPostal(QLineEdit* sender, dbase::Field* postalCodeField, dbase::Field* unused, bool ask,
                             const QString& newPostalCode, const QString& type);
    /// What happened to the street last left.
    enum class TypedStreet {
        Known,    // or an empty box
        Unknown,  // the user chose to do nothing about it
        Added,    // it is current, unless its card has led elsewhere
        NotAdded, // adding it failed, and the user was informed why
        Chosen    // another one, from the list; it is current
    };
    /// Result of the last ExitDireccionPostal. The box's Tag does not show it: it is 1 after an addition, but
    /// the key of a street may be 1 too.
    [[nodiscard]] TypedStreet typedStreet() const { return typedStreet_; }

    // --- House numbers. Both begin at the current row: call BuscaEnPostal first if the number has changed.
    /// Writes the postal code of the row whose range holds the number, among the rows with the current name
    /// and type.
    void ExitNumeroPostal(QLineEdit* sender, dbase::Field* postalCodeField);
    /// Variant that considers only rows without type, and returns to its starting row if none holds the
    /// number.
    void ExitNumeroPostal_(QLineEdit* sender, dbase::Field* postalCodeField);

    /// Shows the list of streets; true if one was chosen, which is then current under the previously active
    /// tag. `standalone`: begin in the host's own province instead of the current municipality's.
    bool BuscarDireccionPostal(bool standalone);

    /// Moves POSTAL to a street of a municipality, for a stored address; MUNICIPI keeps its order.
    void SituaPrimerViaMunicipio(const QString& codIne, const QString& street, const QString& type);

    // --- Keeping the streets. Only streets added by users, whose key begins with "99", may be changed. An
    // operation that fails in the engine returns false, like one refused with a message of its own; callers
    // acting for a user then call showStreetFailure(), which reports the former and is silent otherwise:
    // if (!controller.AceptarVia()) controller.showStreetFailure();
    /// Starts a new row for the current municipality, with open number ranges. False if it cannot.
    bool AnadirVia();
    /// Puts the current row into edit. False with a message if there is none or it may not be changed; false
    /// without one if another workstation holds or has changed it.
    bool ModificarVia();
    /// Deletes the current row; with `ask`, after a question. `unused` has no effect. True if it is gone.
    /// Deliberate: true also for an empty table, where nothing is left to delete.
    bool BorrarVia(bool ask, bool unused = false);
    /// Stores the pending row, a new one under a key of its own. A row without a name is refused and dropped.
    /// False if it was not stored; it then stays pending, unless it lacked a name. To store many, request no
    /// wait for each and call DM->tbPostal.sync() after them.
    bool AceptarVia(dbase::Durability durability = Config.durability());
    /// Asks, and drops the pending row on yes; returns false on no.
    bool CancelarVia();
    /// Stores a pending new row under the next free key; a lock keeps other workstations from taking that
    /// key. Called by AceptarVia alone. Errors: dbase::Error; ambrel::SilentAbort if another workstation
    /// holds the lock, of which the user has been informed.
    bool PostInsert(dbase::Durability durability = Config.durability());
    /// Why the last of these operations failed in the engine, for the user; empty if it did not fail or the
    /// text has been shown.
    [[nodiscard]] const QString& streetFailure() const { return streetFailure_; }
    /// Shows that text once; does nothing if there is none.
    void showStreetFailure();
    /// Opens the card of the current street; `municipality` is the name it shows, or empty. Afterwards
    /// MUNICIPI is ordered by name, on the first municipality with the current one's postal code. Anything
    /// that the card could not store is dropped when it closes.
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

    friend class ambrel::StreetGroup;

    QString streetFailure_;
    ambrel::StreetGroup* group_ = nullptr; // the one now open
    TypedStreet typedStreet_ = TypedStreet::Known;
};
