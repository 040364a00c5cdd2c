// The card of a street: its municipality, province, type, name, postal code and house numbers.
#pragma once

#include <QDialog>
#include <cstdint>
#include <memory>

#include "AmbrelExport.h"
#include "controller/Operacion.h"
#include "controller/StreetCard.h"
#include "dbase/dataset/data_source.h"

class QComboBox;
class TClassCodPostales;

namespace ambrel {
class BoundEdit;
class FocusHelp;
} // namespace ambrel
namespace Ui {
class TFFichaVia;
}

/// Works on the current row of the controller's POSTAL, or on a new one; typed text reaches the row at once.
/// exec() returns 1 if the operation was carried out, 2 if it was cancelled; a row that could not be stored
/// stays pending. An addition or change that cannot start turns the card into a read-only view.
class AMBREL_EXPORT TFFichaVia : public QDialog {
    Q_OBJECT
public:
    /// `codIne`: INE code of the street's municipality. `vecindad`: a name to show instead of the name of the
    /// municipality with the street's postal code; may be empty. The controller must outlive the card.
    TFFichaVia(QWidget* owner, TClassCodPostales& controller, TOperacion operation, QString codIne,
               QString vecindad);
    ~TFFichaVia() override;

    /// The close button does what BBCancelar does.
    void reject() override;

protected:
    void showEvent(QShowEvent* event) override;

private:
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

    std::unique_ptr<Ui::TFFichaVia> ui_;
    ambrel::FocusHelp* help_ = nullptr;
    TClassCodPostales& Controlador;
    TOperacion Operacion;
    QString CodIne;
    QString Vecindad;
    ambrel::StreetCardTables tables_;
    dbase::DataSource DSPostal;
};
