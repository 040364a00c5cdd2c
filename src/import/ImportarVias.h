// The import of streets from the cadastre's street directory and from files of municipalities.
#pragma once

#include <QDialog>
#include <memory>

#include "AmbrelExport.h"

class TClassCodPostales;

/// Finds streets, shows them and saves them into the controller's POSTAL: those of a municipality into one of
/// the host's, or those of all municipalities of a province. exec() returns 2; saving does not close it.
class AMBREL_EXPORT TFImportarVias : public QDialog {
    Q_OBJECT
public:
    /// The controller must outlive the dialog.
    TFImportarVias(QWidget* owner, TClassCodPostales& controller);
    ~TFImportarVias() override;

    void reject() override;
    void done(int result) override;

protected:
    bool event(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};
