// The card of a street: its municipality, province, type, name, postal code and house numbers.
#pragma once

#include <QDialog>
#include <memory>

#include "AmbrelExport.h"
#include "controller/Operacion.h"

class TClassCodPostales;

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
    struct Parts;
    std::unique_ptr<Parts> parts_;
};
