// What the street card consists of; for its own sources.
#pragma once

#include <QString>
#include <cstdint>
#include <utility>

#include "controller/StreetCard.h"
#include "dbase/dataset/data_source.h"
#include "dialogs/FichaVia.h"
#include "ui_FichaVia.h"

class TClassCodPostales;

namespace ambrel {
class FocusHelp;
}

/// The card's controls, handlers and tables. Private to the dialog.
struct TFFichaVia::Parts {
    Parts(TFFichaVia& dialog, TClassCodPostales& controller, TOperacion operation, QString codIne,
          QString vecindad);

    // FichaVia.cpp: the card, from opening to closing.
    void FormShow();
    [[nodiscard]] bool FormKeyDown(std::uint16_t key);
    void BBAceptarClick();
    void BBCancelarClick();
    void SoloLectura();
    void LimpiaDatos();
    void connectHandlers();
    void watchControls();
    void bindEdits();
    void startAddition();
    void startModification();
    void tellCannotStart();
    void viewOnly();
    void storeStreet();

    // FichaViaDatos.cpp: provinces and street types in their combos, and checks of the typed data.
    static void showText(QComboBox& combo, const QString& text);
    void CargaProvincias();
    void CargaTipoVia();
    void BuscaProvinciaPorCodigo();
    void BuscaTipoViaPorCodigo();
    [[nodiscard]] QString ObtenCodProv(const QString& province);
    [[nodiscard]] QString ObtenTipoVia(const QString& streetType);
    [[nodiscard]] bool ValidaProvincia(const QString& province, const QString& expectedCode);
    [[nodiscard]] bool ValidaTipoVia(const QString& streetType);
    [[nodiscard]] bool ValidaCodPostal(const QString& postalCode, const QString& province);
    [[nodiscard]] bool CompruebaDatos();
    [[nodiscard]] bool checkTexts();
    void fillEmptyNumbers();
    [[nodiscard]] bool checkNumbers();

    // FichaViaVecindad.cpp: the municipality.
    void BuscaVecindad();
    void EVecindadChange();
    void EVecindadKeyUp(std::uint16_t& key, Qt::KeyboardModifiers shift);
    void EVecindadExit();
    void BBListarClick();
    void goToMunicipality(const QString& codIne);
    [[nodiscard]] QString nameForProvince() const;
    [[nodiscard]] bool takePostalCode(const QString& codIne, const QString& postalCode);
    void takeProvince(const QString& name, const QString& codIne);

    /// The form as Designer has it.
    struct Form : Ui::TFFichaVia {
        explicit Form(QDialog& dialog) { setupUi(&dialog); }
    };

    TFFichaVia& card;
    Form ui;
    ambrel::FocusHelp* help = nullptr;
    TClassCodPostales& Controlador;
    TOperacion Operacion;
    QString CodIne;
    QString Vecindad;
    ambrel::StreetCardTables cardTables;
    dbase::DataSource DSPostal;
};
