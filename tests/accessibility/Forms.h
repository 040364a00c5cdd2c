// Test fixture: every form of the house by its name, shown over tables with the longest texts that occur.
#pragma once

#include <QWidget>
#include <functional>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

#include "controller/ClasCodPostales.h"
#include "data/PostalTables.h"
#include "import/SimulatedDirectory.h"

namespace accessibility_tests {

enum class Form {
    MunicipiLista,
    BuscarMunicipios,
    MunicipiListaMJ,
    ProvList,
    TipoViasLista,
    BuscarDireccionPostal,
    FichaViaNueva,
    FichaViaConsulta,
    ImportarFichero,
    ImportarMunicipio,
    ImportarProvincia,
    Progreso,
    MensajePregunta,
    MensajeAviso,
    Clientes,
    Rutina,
    ValidarFichero,
    ValidarResultado,
    RevisarTablas
};

[[nodiscard]] const std::vector<Form>& allForms();
/// The name in the enumeration, used for a test's variant.
[[nodiscard]] std::string nameOf(Form form);
std::ostream& operator<<(std::ostream& out, Form form);

/// The host's tables know MADRID, with its streets ALCALA and GRAN VIA (added by a user), a few more
/// municipalities and the longest names that occur. The service on loopback knows MADRID with ALPEDRETE.
class Forms : public postal_tests::PostalTables {
protected:
    using Step = std::function<void(QWidget& window)>;

    Forms();
    ~Forms() override;

    /// Shows the form, active, passes it to the step, and closes it unless the step has done that.
    void show(Form form, const Step& step);

    std::unique_ptr<TClassCodPostales> controller;

private:
    void showMunicipalityList(Form form, const Step& step);
    void showSmallList(Form form, const Step& step);
    void showStreetCard(Form form, const Step& step);
    void showImport(Form form, const Step& step);
    void showBox(Form form, const Step& step);
    void showHost(Form form, const Step& step);
    void showValidation(Form form, const Step& step);
    void showAudit(const Step& step);

    SimulatedDirectory service_;
};

/// The name of the focused control of a window, also when the focus is in a part of it.
[[nodiscard]] std::string focused(const QWidget& window);
/// Presses a key in the focused control of a window.
void press(QWidget& window, Qt::Key key, Qt::KeyboardModifiers modifiers = {});
/// Presses Alt and a letter, which must close the window.
void pressAltToClose(QWidget& window, Qt::Key letter);
/// Types letter by letter into the focused control of a window.
void type(const QWidget& window, const QString& text);
/// The same, followed by Tab.
void typeAndTab(QWidget& window, const QString& text);

} // namespace accessibility_tests
