// The parts of the import dialog; for its own sources.
#pragma once

#include <QString>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "import/DirectoryClient.h"
#include "import/FoundStreetsView.h"
#include "import/HostPlaceChoice.h"
#include "import/ImportMessages.h"
#include "import/ImportarVias.h"
#include "import/MunicipalitySaving.h"
#include "import/ProvinceImport.h"
#include "import/StreetSource.h"
#include "ui_ImportarVias.h"

class QRadioButton;

namespace ambrel {
class FocusHelp;
}

/// The form and its handlers, which delegate to the pieces. Private to the dialog.
struct TFImportarVias::Parts {
    Parts(TFImportarVias& dialog, TClassCodPostales& controller);

    // ImportarViasForm.cpp: the form, its options and its keys.
    [[nodiscard]] std::vector<QRadioButton*> makeOptions() const;
    void placeOptions();
    void connectControls();
    void connectOptions();
    void connectFocus();
    void makeProvinceMenu();
    void scrollOnSmallScreen();
    void chooseOption(const QRadioButton& button);
    void chooseOptionByKey(QRadioButton& button);
    void showOption();

    // ImportarVias.cpp: the handlers.
    void FormShow();
    void FormResize();
    void FormClose();
    [[nodiscard]] bool FormKeyDown(std::uint16_t key);
    void RBMasDeUnoClick();
    void CBProvinciasExit();
    void CBProvinciasAmbrelExit();
    void BBBuscarViasPorMunicipioClick();
    void BBBuscarViasPorProvinciaClick();
    void BBGuardarPorMunicipioClick();
    void BBGuardarPorProvinciaClick();
    void MIGuardarPorProvinciaClick();

    [[nodiscard]] ambrel::StreetSource& source() const;
    [[nodiscard]] const ambrel::StreetSource::Description& chosen() const { return source().description(); }
    void loadPlaces();
    [[nodiscard]] bool loadMunicipalities();
    void findStreets(const QString& place, const QString& municipality);
    [[nodiscard]] bool isProvinceGiven(const QString& option);

    /// The form as designed in Designer.
    struct Form : Ui::TFImportarVias {
        explicit Form(QDialog& dialog) { setupUi(&dialog); }
    };

    TFImportarVias& dialog;
    const std::string database;
    ambrel::ImportMessages messages;
    ambrel::DirectoryClient directory;
    std::vector<std::unique_ptr<ambrel::StreetSource>> sources;
    std::vector<QRadioButton*> options; // of each source
    Form ui;                            // after the options, which come first for the Tab key
    ambrel::FocusHelp* help = nullptr;
    ambrel::HostPlaceChoice place;
    ambrel::FoundStreetsView found;
    ambrel::MunicipalitySaving saving;
    ambrel::ProvinceImport province;
    bool isChoosingByKey = false; // leaving a control then asks for nothing
};
