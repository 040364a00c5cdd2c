// The list of municipalities that the controller shows.
#pragma once

#include <QDialog>
#include <cstdint>
#include <memory>

#include "AmbrelExport.h"
#include "dbase/dataset/data_source.h"

class QLineEdit;
class TClassCodPostales;
namespace Ui {
class TFBuscarMunicipios;
}
namespace ambrel {
class FocusHelp;
struct MunicipalityListWiring;
} // namespace ambrel

/// Browses a controller's municipalities and changes their order through the controller. The answer is the
/// table's current record.
/// Deliberate: it answers by its Tag, 1 for accepted, not by its result; the close button leaves the Tag as
/// it is.
class AMBREL_EXPORT TFBuscarMunicipios : public QDialog {
    Q_OBJECT
public:
    /// Without an owner, the application's active window is the parent. The controller must outlive the list.
    TFBuscarMunicipios(QWidget* owner, TClassCodPostales& controller);
    ~TFBuscarMunicipios() override;

private:
    friend struct ambrel::MunicipalityListWiring;

    void FormShow();
    void FormResize();
    void TomaFoco(QLineEdit* edit);
    void Dejafoco(QLineEdit* edit);
    void ECODINEEnter();
    void ECODPOSTALEnter();
    void ENOMBREEnter();
    void ECODINEKeyUp(QLineEdit& edit, std::uint16_t key);
    void DBGMUNICIPITitleClick(int column);
    void DBGMUNICIPIDblClick();
    void BBAceptarClick();
    void BBCancelarClick();

    TClassCodPostales& controller_;
    dbase::DataSource DSMunicipi;
    std::unique_ptr<Ui::TFBuscarMunicipios> ui_;
    ambrel::FocusHelp* help_;
};
