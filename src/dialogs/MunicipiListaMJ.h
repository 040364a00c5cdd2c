// The alternative list of municipalities, in order of name.
#pragma once

#include <QDialog>
#include <cstdint>
#include <memory>

#include "AmbrelExport.h"

namespace Ui {
class TFMunicipiListaMJ;
}
namespace ambrel {
class FocusHelp;
}
namespace dbase {
class Dataset;
}

/// Browses the `tbMunicipiMJ` of the `DMMunicipi` that exists when the list is created; shows nothing while
/// it is closed. A routine running meanwhile may reset the global, but the module must outlive the list.
/// exec() returns 1 if a municipality was accepted, 2 otherwise; the answer is the table's current record.
class AMBREL_EXPORT TFMunicipiListaMJ : public QDialog {
    Q_OBJECT
public:
    /// Without an owner, the application's active window is the parent.
    explicit TFMunicipiListaMJ(QWidget* owner = nullptr);
    ~TFMunicipiListaMJ() override;

private:
    void connectControls();

    void FormShow();
    void FormResize();
    void TomaFoco();
    void Dejafoco();
    void ENOMBREEnter();
    void ENOMBREKeyUp(std::uint16_t key);
    void DBGMUNICIMJTitleClick();
    void DBGMUNICIMJDblClick();
    void BBAceptarClick();
    void BBCancelarClick();

    dbase::Dataset& table_;
    std::unique_ptr<Ui::TFMunicipiListaMJ> ui_;
    ambrel::FocusHelp* help_;
};
