// Test fixture: the import dialog on the screen, over a few of the host's places, and a service on loopback.
#pragma once

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "SimulatedDirectory.h"
#include "controller/ClasCodPostales.h"
#include "data/CodPostalesDM.h"
#include "data/PostalTables.h"
#include "import/ImportarVias.h"
#include "import/StreetGrid.h"
#include "services/Pantalla.h"
#include "support/ModalScript.h"
#include "support/ScriptedMessages.h"

namespace postal_tests {

using Texts = std::vector<std::string>;

/// The service knows MADRID with ALPEDRETE (streets CL ALPISTE, AV MAYOR, PZ SOL), EL ESCORIAL (CL REAL),
/// MADRID (CL ALCALA) and PARLA (no streets), and LA RIOJA with HARO. The host has MADRID and RIOJA, LA:
/// ALPEDRETE, ESCORIAL (EL) and ARANJUEZ/REAL SITIO have one code, MADRID and PARLA several.
class ImportForm : public PostalTables {
protected:
    ImportForm();
    ~ImportForm() override;

    /// Shows the dialog, in the first mode.
    void show();
    /// Shows the dialog and switches to another mode.
    void show(const char* mode);
    /// Writes a file into POSTALES, whose folders are created; texts are UTF-8, a .dat becomes Windows-1252.
    void file(const std::string& name, const std::string& content);
    /// An answer with these streets (type and name), as the service sends it.
    static std::string answer(const std::vector<std::pair<std::string, std::string>>& streets);
    [[nodiscard]] std::string postales(const std::string& name = {}) const;

    template<class Widget>
    [[nodiscard]] Widget& control(const char* name) const {
        return ambrel::test::child<Widget>(*dialog, name);
    }
    [[nodiscard]] QComboBox& combo(const char* name) const { return control<QComboBox>(name); }
    [[nodiscard]] std::string chosen(const char* name) const;
    [[nodiscard]] Texts items(const char* name) const;
    [[nodiscard]] std::string message() const;
    [[nodiscard]] std::string focused() const;
    /// Rows of the list, cells joined by "|".
    [[nodiscard]] Texts rows() const;
    /// Stored streets as "TYPE NAME CODE", in the order in which they were added.
    [[nodiscard]] static Texts stored();

    void choose(const char* combo, const char* item) const;
    void click(const char* button) const;
    void chooseMode(const char* mode) const;
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) const;
    void chooseMenuItem() const;

    /// Expects a message box; `whileProgress`: the progress window is open when it comes.
    void expectBox(const char* text, const char* title, bool whileProgress = false);
    [[nodiscard]] bool isProgressOpen() const;

    SimulatedDirectory service;
    ambrel::test::ScriptedMessages messages;
    std::unique_ptr<TClassCodPostales> controller;
    std::unique_ptr<TFImportarVias> dialog;
    Texts progress; // texts of the progress windows, in order
    Texts bar;      // successive states of the dialog's bar: "DONE/ALL TEXT"

private:
    void noteBar();

    std::vector<bool> expectedProgress_, seenProgress_;
    ambrel::MessageShower answering_;
    ambrel::ProgressDisplay display_;
    int openWindows_ = 0;
};

} // namespace postal_tests
