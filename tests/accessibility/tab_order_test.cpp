// The way that the Tab key takes through each form.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QComboBox>
#include <algorithm>

#include "accessibility/FormControls.h"
#include "accessibility/Forms.h"
#include "support/ModalScript.h"

namespace accessibility_tests {
namespace {

using Way = std::vector<std::string>;

/// From the first control to the last; after it comes the first again.
struct FormOrder {
    Form form;
    Way controls;
    Way byOtherKeys = {}; // controls that Tab skips, because a key of their own reaches them
    Way backwards = {};   // when Shift+Tab does not just walk back
};

class TabOrder : public Forms, public ::testing::WithParamInterface<FormOrder> {};

const std::vector<FormOrder>& orders() {
    static const Way municipalities{"ECODINE",     "ECODPOSTAL", "ENOMBRE",
                                    "DBGMUNICIPI", "BBAceptar",  "BBCancelar"};
    static const std::vector<FormOrder> all{
        {Form::MunicipiLista, municipalities},
        {Form::BuscarMunicipios, municipalities},
        {Form::MunicipiListaMJ, {"ENOMBRE", "DBGMUNICIMJ", "BBAceptar", "BBCancelar"}},
        {Form::ProvList, {"E_BUSQUEDA", "DBGProvincias", "BBAceptar", "BBCancelar"}},
        {Form::TipoViasLista, {"EBUSCA", "DBGTIPO_VIA", "BBAceptar", "BBCancelar"}},
        {Form::BuscarDireccionPostal,
         {"EVia", "CBProvincia", "BBActualizarCOD_INE", "DBGPostal", "BBAnadir", "BBDetalles", "BBImportar",
          "BBAceptar", "BBCancelar"}},
        {Form::FichaViaNueva,
         {"EVecindad", "CBProvincia", "CBTipoVia", "DBEVia", "DBECodPostal", "DBEImparIni", "DBEImparFin",
          "DBEParIni", "DBEParFin", "BBAceptar", "BBCancelar"},
         {"BBListar"}},
        {Form::FichaViaConsulta, {"BBAceptar", "BBCancelar"}},
        // Leaving a province moves the focus to the municipality, however it is left. Choosing the
        // second or third mode moves it to the province.
        {Form::ImportarFichero,
         {"RBMasDeUno", "CBProvincias", "BBBuscarViasPorMunicipio", "CBProvinciasAmbrel",
          "CBMunicipiosAmbrel", "BBGuardarPorMunicipio", "BBCancelar"},
         {"RBUno", "RBTodosConUno", "SGVias"},
         {"BBCancelar", "BBGuardarPorMunicipio", "CBMunicipiosAmbrel", "CBProvinciasAmbrel",
          "CBMunicipiosAmbrel"}},
        {Form::ImportarMunicipio,
         {"CBProvincias", "CBMunicipios", "BBBuscarViasPorMunicipio", "CBProvinciasAmbrel",
          "CBMunicipiosAmbrel", "BBGuardarPorMunicipio", "BBCancelar", "RBUno"},
         {"RBMasDeUno", "RBTodosConUno", "SGVias"},
         {"RBUno", "BBCancelar", "BBGuardarPorMunicipio", "CBMunicipiosAmbrel", "CBProvinciasAmbrel",
          "CBMunicipiosAmbrel"}},
        {Form::ImportarProvincia,
         {"CBProvincias", "BBBuscarViasPorProvincia", "BBGuardarPorProvincia", "BBCancelar", "RBTodosConUno"},
         {"RBMasDeUno", "RBUno", "SGVias"}},
        {Form::MensajePregunta, {"BBSi", "BBNo"}},
        {Form::MensajeAviso, {"BBAceptar"}},
        {Form::Clientes,
         {"ENombre", "EMunicipio", "EProvincia", "ETipoVia", "EVia", "ENumero", "EPiso", "ECodPostal",
          "LDomicilio", "BBCopiar", "BBAnterior", "BBSiguiente", "BBNuevo", "BBGuardar"},
         {"BBMunicipio", "BBProvincia", "BBTipoVia", "BBVia"}},
        {Form::Rutina, {"ENombre", "RResultado", "BBEjecutar", "BBCerrar"}}};
    return all;
}

INSTANTIATE_TEST_SUITE_P(Form, TabOrder, ::testing::ValuesIn(orders()),
                         [](const auto& order) { return nameOf(order.param.form); });

/// Makes a choice in the combos that ask for one when they are left.
void choose(const QWidget& window) {
    for (const char* const name : {"CBProvincias", "CBProvinciasAmbrel"}) {
        if (auto* const combo = window.findChild<QComboBox*>(QLatin1String(name))) {
            combo->setCurrentIndex(combo->findText(QStringLiteral("MADRID"), Qt::MatchContains));
        }
    }
}

/// The controls that a key reaches, starting with the focused one.
Way walk(QWidget& window, Qt::Key key, std::size_t steps) {
    Way way;
    for (std::size_t step = 0; step < steps; ++step) {
        way.push_back(focused(window));
        press(window, key, key == Qt::Key_Backtab ? Qt::ShiftModifier : Qt::NoModifier);
    }
    return way;
}

void startAt(QWidget& window, const std::string& control) {
    const std::size_t all = controlsOf(window).size();
    for (std::size_t step = 0; step < all && focused(window) != control; ++step) {
        press(window, Qt::Key_Tab);
    }
    ASSERT_EQ(focused(window), control) << "cannot be reached";
}

TEST_P(TabOrder, TabWalksThroughTheFormAndBackToItsBeginning) {
    const FormOrder& order = GetParam();
    show(order.form, [&](QWidget& window) {
        choose(window);
        startAt(window, order.controls.front());
        EXPECT_EQ(walk(window, Qt::Key_Tab, order.controls.size()), order.controls);
        EXPECT_EQ(focused(window), order.controls.front()) << "after the last one";
    });
}

TEST_P(TabOrder, ShiftTabWalksBack) {
    const FormOrder& order = GetParam();
    Way expected = order.backwards;
    if (expected.empty()) {
        expected.assign(order.controls.rbegin(), order.controls.rend());
    }
    show(order.form, [&](QWidget& window) {
        choose(window);
        startAt(window, expected.front());
        EXPECT_EQ(walk(window, Qt::Key_Backtab, expected.size()), expected);
    });
}

TEST_P(TabOrder, EachEnabledControlIsOnTheWayOrHasAKeyOfItsOwn) {
    const FormOrder& order = GetParam();
    show(order.form, [&](QWidget& window) {
        const Way &reached = order.controls, &wanted = order.byOtherKeys;
        for (const QWidget* const control : controlsOf(window)) {
            const std::string name = control->objectName().toStdString();
            const bool isReached = std::find(reached.begin(), reached.end(), name) != reached.end();
            const bool hasKey = std::find(wanted.begin(), wanted.end(), name) != wanted.end();
            EXPECT_EQ(isReached, isTabStop(*control)) << name;
            EXPECT_TRUE(isReached || hasKey || !control->isEnabled()) << name << " is out of reach";
        }
    });
}

} // namespace
} // namespace accessibility_tests
