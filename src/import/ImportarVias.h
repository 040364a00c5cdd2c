// The import of streets from the cadastre's street directory and from files of municipalities.
#pragma once

#include <QDialog>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "AmbrelExport.h"
#include "import/Document.h"
#include "import/ResponseReaders.h"
#include "import/StreetSaving.h"
#include "services/Pantalla.h"

class QComboBox;
class QRadioButton;
class TClassCodPostales;

namespace ambrel {
class FocusHelp;
class ProvinceRun;
enum class ProvinceDeed;
struct HostPlace;
} // namespace ambrel
namespace Ui {
class TFImportarVias;
}

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
    // ImportarVias.cpp: the form, its modes, its keys.
    void connectControls();
    void connectModes();
    void connectFocus();
    void makeProvinceMenu();
    void FormShow();
    void FormResize();
    void FormClose();
    [[nodiscard]] bool FormKeyDown(std::uint16_t key);
    void chooseMode(const QRadioButton& button);
    void chooseModeByKey(QRadioButton& button);
    void fitCaptions();
    void RBMasDeUnoClick();
    void showMode();
    [[nodiscard]] ambrel::ImportMode mode() const;
    [[nodiscard]] static int Indice(const QComboBox& combo, const QString& text);
    void LimpiaDatos(bool Todo);
    [[nodiscard]] const std::string& databaseName() const;
    void openProgress(const QString& text);
    void closeProgress();
    [[nodiscard]] static bool succeeds(const std::function<bool()>& step);

    // ImportarViasWeb.cpp: asking the web service, and taking its answers.
    [[nodiscard]] bool TraeProvincias();
    [[nodiscard]] bool TraeMunicipios();
    [[nodiscard]] bool TraeVias(const QString& Carpeta, const QString& Fichero);
    [[nodiscard]] bool CargaProvincias();
    [[nodiscard]] bool CargaMunicipios();
    [[nodiscard]] bool CargaVias();
    void exchange(const QString& progress, const std::string& operation, const std::string& request);
    void keepCopy() const;
    [[nodiscard]] bool isRead(ambrel::Reading reading);

    // ImportarViasListas.cpp: what the combos offer.
    void CargaMunicipiosMasDeUnCodigo();
    void CargaMunicipiosUnCodigo();
    void CBProvinciasExit();
    [[nodiscard]] bool loadMunicipalities();
    void CargaProvinciasAmbrel();
    void CBProvinciasAmbrelExit();
    void loadHostMunicipalities();
    void LiberaProvinciasAmbrel();
    void LiberaMunicipiosAmbrel();

    // ImportarViasBusqueda.cpp: finding streets.
    void BBBuscarViasPorMunicipioClick();
    void findInFile();
    void chooseHostPlacesOfFile();
    void findOnWeb();
    bool ImportarViasMasUnCodigo();
    /// False, with a message, when the mode or the province is missing; `option` is the mode that it names.
    [[nodiscard]] bool isProvinceGiven(const QString& option);
    void BBBuscarViasPorProvinciaClick();
    void fetchStreetsOfChosen();
    void startRun(ambrel::ProvinceDeed deed, const QString& province, int municipalities);

    // ImportarViasGuardar.cpp: saving those of one municipality.
    void BBGuardarPorMunicipioClick();
    void GuardaVias();
    [[nodiscard]] bool CompruebaMunicipioConUnicoCP() const;
    [[nodiscard]] ambrel::HostMunicipality hostMunicipality() const;
    [[nodiscard]] ambrel::StreetSaving::Outcome saveStreets(const std::vector<std::string>* postalCodes);

    // ImportarViasLote.cpp: saving those of provinces.
    void BBGuardarPorProvinciaClick();
    void MIGuardarPorProvinciaClick();
    [[nodiscard]] std::vector<std::string> filedAnswers(const std::string& folder) const;
    void saveProvinceFolders();
    void saveAnswers(const std::vector<std::string>& files);
    void saveAnswer(const std::string& file);
    [[nodiscard]] bool chooseHostPlaces(QString& municipality);
    void askForHostPlaces(const QString& municipality);
    void loadAndSave(const std::string& file);
    void tellMissingFiles();
    void tellBatchFailure();

    std::unique_ptr<Ui::TFImportarVias> ui_;
    ambrel::FocusHelp* help_ = nullptr;
    TClassCodPostales& Controlador;
    ambrel::ProgressWindow Progreso;
    bool EnLote = false;
    QString batchFailure_;                     // the last one that the user has not been told
    std::unique_ptr<ambrel::ProvinceRun> run_; // while a province is searched or saved
    bool isChoosingByKey_ = false;             // what is left for that is not asked about
    ambrel::DirectoryDocument XML;
};
