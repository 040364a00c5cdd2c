// The list of provinces or countries, where the user chooses one.
#pragma once

#include <QDialog>
#include <cstdint>
#include <memory>

#include "AmbrelExport.h"
#include "dbase/dataset/data_source.h"
#include "dbase/dataset/dataset.h"

namespace Ui {
class TFProvList;
}

/// The caller opens `TProvin`, configures the list, runs exec() and reads the choice: 1 accepted, 2 anything
/// else. The table stays open, on its record.
class AMBREL_EXPORT TFProvList : public QDialog {
    Q_OBJECT
public:
    /// Without an owner, the application's active window is the parent.
    explicit TFProvList(QWidget* owner = nullptr);
    ~TFProvList() override;

    /// Sets the titles of the window and of its frame; with a province code other than 0, shows only the
    /// territories of the group, starting at that code. Errors: dbase::Error of a closed or damaged table.
    /// Deliberate: with code 0 all territories are shown, whatever the group.
    void Configura(const QString& caption, const QString& heading, int provinceCode, int group);

    /// The accepted territory; 0, 0 and empty until one is accepted.
    [[nodiscard]] int chosenCode() const { return chosenCode_; }
    [[nodiscard]] int chosenGroup() const { return chosenGroup_; }
    [[nodiscard]] const QString& chosenName() const { return chosenName_; }

    /// The territories shown in the list.
    dbase::Dataset TProvin{"DB", "PROVIN.DBF", "CODIGO"};
    dbase::Field& TProvinPROVINCIA = TProvin.bindCharacter("PROVINCIA", 21);
    dbase::Field& TProvinCODIGO = TProvin.bindCharacter("CODIGO", 3);
    dbase::Field& TProvinGRUPO = TProvin.bindInteger("GRUPO");
    dbase::Field& TProvinCOD_198 = TProvin.bindCharacter("COD_198", 3);
    /// Code and name as one text, in group 3 with the second code between them.
    dbase::Field& TProvinDATO = TProvin.addCalculated("DATO", 27);
    dbase::DataSource DSProvin{&TProvin};

private:
    [[nodiscard]] bool FormKeyDown(std::uint16_t key);
    void FormShow();
    void FormResize();
    void TProvinCalcFields();
    void E_BUSQUEDAKeyUp(std::uint16_t key);
    void BBAceptarClick();
    void BBCancelarClick();

    void chooseOrder();
    void seekText();

    std::unique_ptr<Ui::TFProvList> ui_;
    int chosenCode_ = 0;
    int chosenGroup_ = 0;
    QString chosenName_;
};
