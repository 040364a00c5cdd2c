// The list of streets, where the user searches, chooses and maintains them.
#pragma once

#include <QDialog>
#include <cstdint>
#include <memory>

#include "AmbrelExport.h"
#include "controller/Operacion.h"
#include "dbase/dataset/data_source.h"
#include "dbase/dataset/dataset.h"

class TClassCodPostales;

namespace ambrel {
class FocusHelp;
}

namespace Ui {
class TFBuscarDireccionPostal;
}

/// Works on the controller's tables. Its Tag is 1 once a street has been accepted, which is then POSTAL's
/// current row, with its municipality MUNICIPI's; otherwise the Tag stays 0.
class AMBREL_EXPORT TFBuscarDireccionPostal : public QDialog {
    Q_OBJECT
public:
    /// `standalone`: begin in the host's own province instead of the current municipality's.
    TFBuscarDireccionPostal(QWidget* owner, TClassCodPostales& controller, bool standalone);
    ~TFBuscarDireccionPostal() override;

    /// The provinces on offer.
    dbase::Dataset tbProvin{"DB", "PROVIN.DBF", "ALFABETICO"};
    dbase::Field& tbProvinPROVINCIA = tbProvin.bindCharacter("PROVINCIA", 21);
    dbase::Field& tbProvinCODIGO = tbProvin.bindCharacter("CODIGO", 3);
    dbase::Field& tbProvinCOD_198 = tbProvin.bindCharacter("COD_198", 3);
    dbase::Field& tbProvinGRUPO = tbProvin.bindInteger("GRUPO");
    /// Receives POSTAL when the dialog is shown.
    dbase::DataSource DSPostal;

    void reject() override;

protected:
    bool event(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void breakWideRow();
    void connectControls();

    void FormShow();
    void FormResize();
    [[nodiscard]] bool FormKeyDown(std::uint16_t key, Qt::KeyboardModifiers modifiers);
    void DSPostalDataChange(dbase::DatasetChange change);
    void EViaKeyUp(std::uint16_t key);
    void CBProvinciaChange();
    void BBActualizarCOD_INEClick();
    void BBAceptarClick();
    void BBCancelarClick();
    void BBModificarClick();
    void BBAnadirClick();
    void BBEliminarClick();
    void BBDetallesClick();
    void BBImportarClick();

    void CargaProvincias();
    [[nodiscard]] int BuscaProvincia(const QString& text) const;
    void ActualizaTablaMunicipi();
    void CompruebaSiViaNueva();
    void ActualizaMunicipio();
    void KeyUpDireccionPostal(std::uint16_t key);
    void goToTypedStreet();

    std::unique_ptr<Ui::TFBuscarDireccionPostal> ui_;
    TClassCodPostales& controller_;
    const bool standalone_;
    int leastGridRoom_ = 0; // logical pixels; all columns at minimum width
    int nameGrowth_ = 0;    // of the name column beyond its minimum width
    dbase::Dataset::Subscription onDataChange_;
    ambrel::FocusHelp* help_ = nullptr;
};
