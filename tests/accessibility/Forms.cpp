// Shows each form over tables with the longest texts.
#include "accessibility/Forms.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <filesystem>
#include <ostream>
#include <utility>

#include "data/CodPostalesDM.h"
#include "data/MunicipiDM.h"
#include "data/ViasDM.h"
#include "dialogs/BuscarDireccionPostal.h"
#include "dialogs/BuscarMunicipios.h"
#include "dialogs/FichaVia.h"
#include "dialogs/MunicipiLista.h"
#include "dialogs/MunicipiListaMJ.h"
#include "dialogs/ProvList.h"
#include "dialogs/TipoViasLista.h"
#include "host/DataFolder.h"
#include "host/HostTable.h"
#include "host/MainWindow.h"
#include "host/Style.h"
#include "host/audit/AuditWindow.h"
#include "host/routines/Catalogue.h"
#include "host/routines/RoutineDialog.h"
#include "host/validation/ValidationWindow.h"
#include "import/ImportarVias.h"
#include "services/Confamb.h"
#include "services/MessageBox.h"
#include "services/Pantalla.h"
#include "services/TagProperty.h"
#include "support/ModalScript.h"
#include "support/ShownWindow.h"
#include "support/Typing.h"
#include "tools/callejero/Answers.h"

namespace accessibility_tests {
namespace {

using ambrel::test::ansi;

constexpr const char* longestMunicipality = "GARGANTILLA DEL LOZOYA Y PINILLA DE BUITRAGO";
constexpr const char* longestProvince = "STA. CRUZ DE TENERIFE";
constexpr const char* longestStreet = "NUESTRA SEÑORA DE LOS DESAMPARADOS DE VALENC.";
constexpr const char* longestStreetType = "URBANIZACION";

const std::vector<std::pair<Form, std::string>>& formNames() {
    static const std::vector<std::pair<Form, std::string>> names{
        {Form::MunicipiLista, "MunicipiLista"},
        {Form::BuscarMunicipios, "BuscarMunicipios"},
        {Form::MunicipiListaMJ, "MunicipiListaMJ"},
        {Form::ProvList, "ProvList"},
        {Form::TipoViasLista, "TipoViasLista"},
        {Form::BuscarDireccionPostal, "BuscarDireccionPostal"},
        {Form::FichaViaNueva, "FichaViaNueva"},
        {Form::FichaViaConsulta, "FichaViaConsulta"},
        {Form::ImportarFichero, "ImportarFichero"},
        {Form::ImportarMunicipio, "ImportarMunicipio"},
        {Form::ImportarProvincia, "ImportarProvincia"},
        {Form::Progreso, "Progreso"},
        {Form::MensajePregunta, "MensajePregunta"},
        {Form::MensajeAviso, "MensajeAviso"},
        {Form::Clientes, "Clientes"},
        {Form::Rutina, "Rutina"},
        {Form::ValidarFichero, "ValidarFichero"},
        {Form::ValidarResultado, "ValidarResultado"},
        {Form::RevisarTablas, "RevisarTablas"}};
    return names;
}

std::unique_ptr<const callejero::Directory> directory() {
    return callejero::listedDirectory(
        {{.name = "MADRID",
          .code = 28,
          .municipalities = {
              {.name = "ALPEDRETE", .code = 10, .streets = {{"CL", "ALPISTE"}, {"AV", "MAYOR"}}},
              {.name = longestMunicipality, .code = 66, .streets = {{"CL", longestStreet}}}}}});
}

void addCustomer() {
    host::HostTable table(host::hostDatabase);
    table.data.open();
    table.data.append();
    table.name.setText("PANADERIA LA ESPIGA");
    table.streetType.setText("AV");
    table.street.setText(ansi(longestStreet));
    table.number.setText("45");
    table.floor.setText("BAJO IZDA.");
    table.postalCode.setText("28739");
    table.municipality.setText(longestMunicipality);
    table.province.setText("MADRID");
    table.data.post();
}

/// The style rules of the host.
class HostLook {
public:
    HostLook() { host::applyStyle(*qApp); }
    ~HostLook() {
        qApp->setStyleSheet(QString());
        QApplication::setPalette(palette_);
    }
    HostLook(const HostLook&) = delete;
    HostLook& operator=(const HostLook&) = delete;

private:
    const QPalette palette_ = QApplication::palette();
};

void play(QWidget& window, const std::function<void(QWidget&)>& step) {
    ambrel::test::showActive(window);
    QCoreApplication::processEvents(); // the layout after the first texts
    step(window);
}

} // namespace

const std::vector<Form>& allForms() {
    static const std::vector<Form> forms = [] {
        std::vector<Form> all;
        for (const auto& [form, name] : formNames()) {
            all.push_back(form);
        }
        return all;
    }();
    return forms;
}

std::string nameOf(Form form) { return formNames().at(static_cast<std::size_t>(form)).second; }

std::ostream& operator<<(std::ostream& out, Form form) { return out << nameOf(form); }

Forms::Forms() : service_(directory()) {
    addProvinces({{"028", "MADRID"}, {"008", "BARCELONA"}, {"038", longestProvince}, {"110", "FRANCIA", 3}});
    addMunicipalities(
        {{"28010", "28430", "ALPEDRETE", "S", "1"},
         {"28066", "28739", longestMunicipality, "S", "1"},
         {"28079", "28001", "MADRID", "N", "0"},
         {"28079", "28002", "MADRID", "N", "0"},
         {"08019", "08001", "BARCELONA", "N", "0"},
         {.codIne = "28010", .codPostal = "28431", .nombre = "LOS NEGRALES", .entMenor = true}});
    addAlternativeMunicipalities({{"028", "MADRID"}, {"008", "BARCELONA"}, {"038", "SANTIAGO DEL TEIDE"}});
    addStreetTypes({{"AV", "AVENIDA"}, {"CL", "CALLE"}, {"PZ", "PLAZA"}, {"UR", longestStreetType}});
    addStreets({{"28000001", "ALCALA", "CL", "28001"},
                {"28000002", "MAYOR", "CL", "28001", {1, 9999}, {2, 9998}},
                {"28000003", longestStreet, "AV", "28739", {1, 9999}, {2, 9998}, "28", "1"},
                {"99000000", "GRAN VIA", "CL", "28001", {1, 99}, {2, 98}},
                {"08000001", "BALMES", "CL", "08001", {1, 9999}, {2, 9998}, "08"}});
    Config.setDatabase(host::hostDatabase, folder.path());
    host::createHostTable(folder.path(), host::FirstRows::None);
    addCustomer();
    const std::filesystem::path postales = folder / "POSTALES";
    std::filesystem::create_directories(postales);
    folder.write("POSTALES/28-MADRID.dat",
                 ansi("28001:Mayor, calle (IMPARES DEL 1 AL 33)(PARES DEL 2 AL FINAL)\r\n"
                      "28002:Peña, avenida\r\n"));
    folder.write(std::string("POSTALES/28-") + longestMunicipality + ".dat", ansi("28739:Sol, calle\r\n"));
    controller = std::make_unique<TClassCodPostales>();
    EXPECT_TRUE(controller->BuscaPorNombreMunicipi(QStringLiteral("MADRID"), true));
}

Forms::~Forms() {
    DMMunicipi = nullptr;
    DMVias = nullptr;
    controller.reset(); // before the tables are checked
}

void Forms::show(Form form, const Step& step) {
    switch (form) {
    case Form::MunicipiLista:
    case Form::BuscarMunicipios:
    case Form::MunicipiListaMJ:
        return showMunicipalityList(form, step);
    case Form::ProvList:
    case Form::TipoViasLista:
        return showSmallList(form, step);
    case Form::BuscarDireccionPostal: {
        TFBuscarDireccionPostal dialog(nullptr, *controller, false);
        return play(dialog, step);
    }
    case Form::FichaViaNueva:
    case Form::FichaViaConsulta:
        return showStreetCard(form, step);
    case Form::ImportarFichero:
    case Form::ImportarMunicipio:
    case Form::ImportarProvincia:
        return showImport(form, step);
    case Form::Progreso:
    case Form::MensajePregunta:
    case Form::MensajeAviso:
        return showBox(form, step);
    case Form::Clientes:
    case Form::Rutina:
    case Form::ValidarFichero:
    case Form::ValidarResultado:
    case Form::RevisarTablas:
        return showHost(form, step);
    }
}

void Forms::showMunicipalityList(Form form, const Step& step) {
    if (form == Form::BuscarMunicipios) {
        controller->OrdenaPorNombreMunicipi();
        TFBuscarMunicipios dialog(nullptr, *controller);
        return play(dialog, step);
    }
    TDMMunicipi module;
    DMMunicipi = &module;
    const bool isAlternative = form == Form::MunicipiListaMJ;
    dbase::Dataset& table = isAlternative ? module.tbMunicipiMJ : module.tbMunicipi;
    table.open();
    table.setTag(isAlternative ? "POBLLITE" : "NOMBRE");
    table.first();
    if (isAlternative) {
        TFMunicipiListaMJ dialog;
        return play(dialog, step);
    }
    TFMunicipiLista dialog;
    play(dialog, step);
}

void Forms::showSmallList(Form form, const Step& step) {
    if (form == Form::ProvList) {
        TFProvList dialog;
        dialog.TProvin.open();
        dialog.Configura(QStringLiteral("Lista de provincias"), QStringLiteral("Nacimiento"), 8, 1);
        return play(dialog, step);
    }
    TDMVias module;
    DMVias = &module;
    module.tbTipo_Via.open();
    module.tbTipo_Via.setTag("CODIGO");
    TFTipoViasLista dialog;
    play(dialog, step);
}

void Forms::showStreetCard(Form form, const Step& step) {
    const TOperacion operation = form == Form::FichaViaNueva ? opAlta : opConsulta;
    goToStreet(controller->DM->tbPostal, "99000000");
    TFFichaVia card(nullptr, *controller, operation, QStringLiteral("28079"), {});
    play(card, step);
}

void Forms::showImport(Form form, const Step& step) {
    TFImportarVias dialog(nullptr, *controller);
    ambrel::test::showActive(dialog);
    if (form != Form::ImportarFichero) {
        const char* const mode = form == Form::ImportarMunicipio ? "RBUno" : "RBTodosConUno";
        auto& button = ambrel::test::child<QAbstractButton>(dialog, mode);
        QTest::mouseClick(&button, Qt::LeftButton, {}, QPoint(8, button.height() / 2));
    }
    play(dialog, step);
}

void Forms::showBox(Form form, const Step& step) {
    if (form == Form::Progreso) {
        const ambrel::ProgressWindow window =
            MuestraMensaje(QStringLiteral("Cargando el listado de municipios de ") + longestProvince);
        step(*window);
        CierraMensaje(window);
        return;
    }
    ambrel::test::ModalScript script;
    script.expect("QMessageBox", [&](QDialog& box) {
        step(box);
        if (box.isVisible()) {
            QTest::keyClick(&box, Qt::Key_Escape);
        }
    });
    const bool asks = form == Form::MensajePregunta;
    static_cast<void>(ambrel::showMessageBox(
        {.kind = asks ? ambrel::MessageKind::Question : ambrel::MessageKind::Error,
         .text = asks ? QStringLiteral("El código postal difiere al que hay establecido")
                      : QStringLiteral("No se han podido cargar los municipios asociados a la provincia "
                                       "indicada.Inténtelo de nuevo más tarde"),
         .line = asks ? QStringLiteral("¿Desea actualizar el código código postal?") : QString(),
         .title = asks ? QStringLiteral("Atención") : QStringLiteral("Error al importar los datos"),
         .owner = nullptr}));
}

void Forms::showHost(Form form, const Step& step) {
    const HostLook look;
    host::MainWindow window(host::hostDatabase);
    if (form == Form::Clientes) {
        return play(window, step);
    }
    host::HostTable table(host::hostDatabase);
    table.data.open();
    ambrel::test::showActive(window);
    if (form == Form::ValidarFichero || form == Form::ValidarResultado) {
        return showValidation(form, step);
    }
    if (form == Form::RevisarTablas) {
        return showAudit(step);
    }
    host::routines::RoutineDialog dialog(host::routines::utilities().front(), table.data, &window);
    play(dialog, step);
}

void Forms::showValidation(Form form, const Step& step) {
    // Few and short: the grids scroll sideways, and cut long addresses, which a tip shows whole.
    folder.write("clientes.csv", "DIRECCION;POBLACION\nCalle Alcala 5;Madrid\nRara 7;Madrid\n");
    std::filesystem::remove(std::filesystem::path(folder.path()) / "clientes-validado.csv"); // or it asks
    host::ValidationWindow dialog;
    dialog.setAttribute(Qt::WA_DeleteOnClose, false);
    ambrel::test::showActive(dialog);
    auto& start = ambrel::test::child<QPushButton>(dialog, "BBEmpezar");
    ambrel::test::child<QLineEdit>(dialog, "EFichero")
        .setText(QString::fromStdString((std::filesystem::path(folder.path()) / "clientes.csv").string()));
    EXPECT_TRUE(QTest::qWaitFor([&] { return start.isEnabled(); }));
    if (form == Form::ValidarResultado) {
        start.click();
        EXPECT_TRUE(QTest::qWaitFor([&] { return start.isEnabled(); }, 20000));
    }
    play(dialog, step);
}

void Forms::showAudit(const Step& step) {
    // Little and short: the list cuts long texts, which stand below it as a whole.
    dbase::Dataset streets("DB", "POSTAL"), towns("DB", "MUNICIPI");
    streets.open();
    while (!streets.isEmpty()) {
        streets.erase();
    }
    towns.open();
    while (!towns.isEmpty()) {
        towns.erase();
    }
    addMunicipalities({{"28065", "28901", "GETAFE", "S"}});
    addStreets({{"28000001", "sol", "CL", "28901", {1, 9999}, {2, 9998}, "28", "9"}});
    host::AuditWindow dialog;
    dialog.setAttribute(Qt::WA_DeleteOnClose, false);
    ambrel::test::showActive(dialog);
    const auto& start = ambrel::test::child<QPushButton>(dialog, "BBEmpezar");
    EXPECT_TRUE(QTest::qWaitFor([&] { return start.isEnabled(); }, 20000));
    play(dialog, step);
}

// --- Keys.

std::string focused(const QWidget& window) {
    const QWidget* widget = window.focusWidget();
    while (widget && (widget->objectName().isEmpty() || widget->objectName().startsWith("qt_"))) {
        widget = widget->parentWidget();
    }
    return widget ? widget->objectName().toStdString() : std::string();
}

void press(QWidget& window, Qt::Key key, Qt::KeyboardModifiers modifiers) {
    if (window.isVisible() && !window.isActiveWindow()) {
        ambrel::test::showActive(window); // the test platform leaves none active after another has closed
    }
    QTest::keyClick(window.focusWidget() ? window.focusWidget() : &window, key, modifiers);
}

void pressAltToClose(QWidget& window, Qt::Key letter) {
    press(window, letter, Qt::AltModifier);
    EXPECT_FALSE(window.isVisible()) << "Alt+" << static_cast<char>(letter) << " does not close";
}

void type(const QWidget& window, const QString& text) {
    for (const QChar letter : text) { // each goes to the widget that has the focus by then
        ambrel::test::typeInto(*window.focusWidget(), letter);
    }
}

void typeAndTab(QWidget& window, const QString& text) {
    type(window, text);
    press(window, Qt::Key_Tab);
}

} // namespace accessibility_tests
