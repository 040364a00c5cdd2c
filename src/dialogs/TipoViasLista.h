// The list of street types, where the user chooses one.
#pragma once

#include <QDialog>
#include <cstdint>
#include <memory>

#include "AmbrelExport.h"

namespace dbase {
class Dataset;
}
namespace Ui {
class TFTipoViasLista;
}

/// Browses the street types of the DMVias that exists when the list is created. A routine running meanwhile
/// may reset the global, but the module must outlive the list. exec() returns 1 if a row was accepted, 2
/// otherwise; the answer is the current record of `tbTipo_Via`.
class AMBREL_EXPORT TFTipoViasLista : public QDialog {
    Q_OBJECT
public:
    /// Without an owner, the application's active window is the parent.
    explicit TFTipoViasLista(QWidget* owner = nullptr);
    ~TFTipoViasLista() override;

private:
    void FormShow();
    void FormResize();
    void EBUSCAEnter();
    void EBUSCAKeyUp(std::uint16_t key);
    void DBGTIPO_VIADblClick();
    void BBAceptarClick();
    void BBCancelarClick();

    dbase::Dataset& table_;
    std::unique_ptr<Ui::TFTipoViasLista> ui_;
};
