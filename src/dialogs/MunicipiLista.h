// The list of municipalities shown by the lookup routines.
#pragma once

#include <QDialog>
#include <cstdint>
#include <memory>

#include "AmbrelExport.h"

class QLineEdit;
namespace Ui {
class TFMunicipiLista;
}
namespace ambrel {
class FocusHelp;
struct MunicipalityListWiring;
} // namespace ambrel
namespace dbase {
class Dataset;
}

/// Browses the `tbMunicipi` of the `DMMunicipi` that exists when the list is created; shows nothing while it
/// is closed. A routine running meanwhile may reset the global, but the module must outlive the list. exec()
/// returns 1 if a municipality was accepted, 2 otherwise; the answer is the table's current record.
class AMBREL_EXPORT TFMunicipiLista : public QDialog {
    Q_OBJECT
public:
    /// Without an owner, the application's active window is the parent.
    explicit TFMunicipiLista(QWidget* owner = nullptr);
    ~TFMunicipiLista() override;

private:
    friend struct ambrel::MunicipalityListWiring;

    void FormShow();
    void FormResize();
    bool FormKeyDown(std::uint16_t key);
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

    dbase::Dataset& table_;
    std::unique_ptr<Ui::TFMunicipiLista> ui_;
    ambrel::FocusHelp* help_;
};
