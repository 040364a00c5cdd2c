// TFBuscarDireccionPostal: its captions, sizes, columns and drop-down.
#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QHeaderView>
#include <QScreen>
#include <QScrollBar>
#include <QStatusBar>
#include <QTableView>

#include "dialogs/AddressSearchForm.h"
#include "dialogs/DialogTexts.h"

namespace {

using namespace postal_tests;

using AddressSearch = AddressSearchForm;

TEST_F(AddressSearch, HasItsCaptionsHintsAndSizes) {
    show();
    goToStreet("28000001");
    ambrel::test::expectControls(
        *dialog,
        {{"TFBuscarDireccionPostal", "TFBuscarDireccionPostal", "Direcciones Postales", "", {640, 0}},
         {"PVia", "QWidget", ""},
         {"LVia_", "QLabel", "Nombre de la vía:"},
         {"EVia", "QLineEdit", "", "Escriba el nombre de la vía"},
         {"LProvincia_", "QLabel", "Provincia:"},
         {"CBProvincia", "QComboBox", "", "Seleccione la provincia del municipio"},
         {"LMunicipio_", "QLabel", "Municipio:"},
         {"LMunicipio", "QLabel", "MADRID"},
         {"BBActualizarCOD_INE", "QPushButton", "Actualizar campo COD_INE",
          "Actualiza el campo COD_INE en las vías"},
         {"DBGPostal", "ambrel::DataGrid", ""},
         {"STAyuda", "QLabel", "Pulse INTRO para aceptar la vía seleccionada"},
         {"BBAceptar", "QPushButton", "&Aceptar", "Aceptar los datos y salir de la pantalla"},
         {"BBCancelar", "QPushButton", "&Salir",
          "Pinche el botón si desea cancelar los cambios y salir de la pantalla"},
         {"BBModificar", "QPushButton", "Modificar - Shift +  Ins",
          "Modificar los datos de la vía seleccionada"},
         {"BBAnadir", "QPushButton", "Nuevo - Ins.", "Añadir una nueva vía al listado"},
         {"BBEliminar", "QPushButton", "Borrar - Supr", "Eliminar del listado la vía seleccionada"},
         {"BBDetalles", "QPushButton", "Detalles", "Ver la ficha de la vía seleccionada"},
         {"BBImportar", "QPushButton", "Importar vías de la web", "Importa vías a través de la web"},
         {"SBAyuda", "QStatusBar", ""}});
    EXPECT_GE(dialog->width(), 793);
    EXPECT_FALSE(provinces().isEditable());
}

struct ColumnTexts {
    const char* title;
    int width;
};

TEST_F(AddressSearch, ColumnsHaveTheirTitlesAndAtLeastTheirWidths) {
    show();
    const std::vector<ColumnTexts> expected{{"Tipo vía", 41},     {"Nombre", 223},   {"Cód. Postal", 61},
                                            {"Inicio impar", 58}, {"Fin impar", 58}, {"Inicio par", 58},
                                            {"Fin par", 58}};
    ASSERT_EQ(grid().columnCount(), static_cast<int>(expected.size()));
    int total = 0;
    for (int column = 0; column < grid().columnCount(); ++column) {
        const ColumnTexts& texts = expected[static_cast<std::size_t>(column)];
        EXPECT_EQ(grid().columnTitle(column).toStdString(), texts.title);
        EXPECT_GE(grid().columnWidth(column), texts.width) << texts.title;
        EXPECT_GE(grid().columnWidth(column), grid().fontMetrics().horizontalAdvance(texts.title))
            << texts.title << " is cut";
        total += grid().columnWidth(column);
    }
    EXPECT_EQ(grid().columnWidth(1), 223);
    EXPECT_EQ(total, grid().clientWidth()) << "the last column takes the rest";
}

TEST_F(AddressSearch, NamesGrowWithTheDialogAndTheLastColumnTakesTheRest) {
    show();
    const auto nameAt = [this](int width) {
        dialog->resize(width, dialog->height());
        int total = 0;
        for (int column = 0; column < grid().columnCount(); ++column) {
            total += grid().columnWidth(column);
        }
        EXPECT_EQ(total, grid().clientWidth()) << width;
        return grid().columnWidth(1);
    };
    EXPECT_EQ(nameAt(793), 223);
    const int last = grid().columnWidth(6);
    EXPECT_EQ(nameAt(1000), 223 + 1000 - 793);
    EXPECT_EQ(grid().columnWidth(6), last);
    EXPECT_EQ(nameAt(900), 223 + 900 - 793);
    EXPECT_EQ(nameAt(dialog->minimumWidth()), 223);
    EXPECT_GE(dialog->width(), 640);
    EXPECT_GE(grid().columnWidth(6), 58) << "it is shown in the narrowest, too";
    EXPECT_LT(grid().columnWidth(6), last);
    EXPECT_EQ(nameAt(793), 223);
}

TEST_F(AddressSearch, AColumnThatTheUserDraggedKeepsItsWidthAndGrows) {
    show();
    dialog->resize(1000, dialog->height());
    grid().findChild<QTableView*>()->horizontalHeader()->resizeSection(1, 300);
    dialog->resize(1100, dialog->height());
    EXPECT_EQ(grid().columnWidth(1), 400);
}

TEST_F(AddressSearch, NumbersStandToTheRightAndTheNameBearsTheArrowOfTheOrder) {
    show();
    goToStreet("28000001");
    const QTableView& view = *grid().findChild<QTableView*>();
    for (int column = 0; column < grid().columnCount(); ++column) {
        const Qt::Alignment expected = (column < 3 ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter;
        const QVariant ofTitle = view.model()->headerData(column, Qt::Horizontal, Qt::TextAlignmentRole);
        const QVariant ofCell = view.model()->index(grid().currentRow(), column).data(Qt::TextAlignmentRole);
        EXPECT_EQ(ofTitle.value<Qt::Alignment>(), expected) << column;
        EXPECT_EQ(ofCell.value<Qt::Alignment>(), expected) << column;
    }
    EXPECT_TRUE(view.horizontalHeader()->isSortIndicatorShown());
    EXPECT_EQ(view.horizontalHeader()->sortIndicatorSection(), 1);
}

TEST_F(AddressSearch, RowsShowTypeNamePostalCodeAndRanges) {
    show();
    goToStreet("28000001");
    std::vector<std::string> texts;
    for (int column = 0; column < grid().columnCount(); ++column) {
        texts.push_back(grid().cellText(grid().currentRow(), column).toStdString());
    }
    EXPECT_EQ(texts, (std::vector<std::string>{"CL", "ALCALA", "28001", "1", "9999", "2", "9998"}));
}

TEST_F(AddressSearch, ADropDownShowsSomeProvincesInsideTheScreenWhereverTheDialogIs) {
    std::vector<ProvinceRow> many;
    for (int code = 100; code < 150; ++code) {
        many.push_back({std::to_string(code), "PROVINCIA " + std::to_string(code)});
    }
    addProvinces(many);
    for (const char* const rulesOfTheHost : {"", "QPushButton { padding: 5px; }"}) {
        qApp->setStyleSheet(QLatin1String(rulesOfTheHost));
        show();
        const QRect screen = dialog->screen()->availableGeometry();
        const QPoint corner(screen.right() - 60, screen.bottom() - 60);
        for (const QPoint place : {screen.topLeft(), corner - provinces().pos()}) {
            dialog->move(place);
            provinces().showPopup();
            const QAbstractItemView& list = *provinces().view();
            EXPECT_TRUE(screen.contains(list.window()->geometry()));
            const int row =
                list.visualRect(provinces().model()->index(provinces().currentIndex(), 0)).height();
            EXPECT_LE(list.window()->height(), 21 * row);
            EXPECT_GE(list.window()->height(), 10 * row);
            EXPECT_TRUE(list.verticalScrollBar()->isVisible()) << "one sees that there are more";
            provinces().hidePopup();
        }
    }
    qApp->setStyleSheet(QString());
}

} // namespace
