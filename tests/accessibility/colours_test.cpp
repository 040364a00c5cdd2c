// Texts stay readable in light, dark and high-contrast colours, with the focus and without.
#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QListView>
#include <QPalette>
#include <QTest>
#include <algorithm>
#include <string>
#include <utility>

#include "accessibility/Colours.h"
#include "accessibility/Contrast.h"
#include "accessibility/FormControls.h"
#include "accessibility/Forms.h"
#include "dialogs/common/DataGrid.h"
#include "host/Style.h"
#include "services/Rvarias.h"

namespace accessibility_tests {
namespace {

/// Forms with edits or grids.
const std::vector<Form> coloured{Form::MunicipiLista,     Form::BuscarMunicipios, Form::MunicipiListaMJ,
                                 Form::ProvList,          Form::TipoViasLista,    Form::BuscarDireccionPostal,
                                 Form::FichaViaNueva,     Form::FichaViaConsulta, Form::ImportarFichero,
                                 Form::ImportarMunicipio, Form::Clientes,         Form::Rutina,
                                 Form::ValidarFichero,    Form::ValidarResultado, Form::RevisarTablas};

class Readable : public Forms, public ::testing::WithParamInterface<Form> {
protected:
    Readable() { QApplication::setStyle(QStringLiteral("Fusion")); }
    ~Readable() override { QApplication::setPalette(usual_); }

    void showInAllColours(const Step& step) {
        for (const Colours& colours : allColours()) {
            SCOPED_TRACE(colours.name);
            QApplication::setPalette(paletteOf(colours));
            show(GetParam(), step);
        }
    }

    static void expectReadable(QWidget& widget, const QRect& part, const char* when) {
        const DrawnText drawn = drawnIn(widget, part);
        EXPECT_GE(contrast(drawn.text, drawn.background), readableContrast)
            << widget.objectName().toStdString() << ' ' << when << ": " << drawn.text.name().toStdString()
            << " on " << drawn.background.name().toStdString();
    }

private:
    const QPalette usual_ = QApplication::palette();
};

INSTANTIATE_TEST_SUITE_P(Form, Readable, ::testing::ValuesIn(coloured),
                         [](const auto& form) { return nameOf(form.param); });

/// Without frame, caret and selection.
QRect inside(const QWidget& edit) { return edit.rect().adjusted(5, 5, -5, -5); }

TEST_P(Readable, TheTextOfEachEditIsReadableWithTheFocus) {
    showInAllColours([](QWidget& window) {
        for (QWidget* const control : controlsOf(window)) {
            auto* const edit = qobject_cast<QLineEdit*>(control);
            if (!edit || !edit->isEnabled()) {
                continue;
            }
            const bool isEmpty = edit->text().isEmpty();
            const QSignalBlocker silent(edit);
            if (isEmpty) {
                edit->setText(QStringLiteral("MWH"));
            }
            edit->setFocus(Qt::TabFocusReason);
            ASSERT_TRUE(edit->hasFocus()) << edit->objectName().toStdString();
            edit->deselect();
            expectReadable(*edit, inside(*edit), "with the focus");
            const QPalette& colours = edit->palette();
            EXPECT_GE(contrast(colours.color(QPalette::Text), colours.color(QPalette::Base)),
                      readableContrast)
                << edit->objectName().toStdString();
            if (isEmpty) {
                edit->clear();
            }
        }
    });
}

TEST_P(Readable, TheTextOfEachEditIsReadableWithoutTheFocus) {
    showInAllColours([](QWidget& window) {
        for (QWidget* const control : controlsOf(window)) {
            auto* const edit = qobject_cast<QLineEdit*>(control);
            if (!edit || edit->hasFocus()) {
                continue;
            }
            const QString before = edit->text();
            const QSignalBlocker silent(edit);
            if (before.isEmpty()) {
                edit->setText(QStringLiteral("MWH"));
            }
            expectReadable(*edit, inside(*edit), edit->isEnabled() ? "without the focus" : "disabled");
            edit->setText(before);
        }
    });
}

TEST_P(Readable, TheFocusedEditStandsOut) {
    showInAllColours([](QWidget& window) {
        for (const char* const name : {"ENOMBRE", "E_BUSQUEDA", "EBUSCA", "EVia", "DBEVia"}) {
            auto* const edit = window.findChild<QLineEdit*>(QLatin1String(name));
            if (!edit || !edit->isEnabled() || window.objectName() == QLatin1String("FClientes")) {
                continue; // the host's boxes have the host's colours
            }
            const QColor normal = QApplication::palette().color(QPalette::Base);
            edit->setFocus(Qt::TabFocusReason);
            EXPECT_NE(edit->palette().color(QPalette::Base), normal) << name;
        }
    });
}

TEST_P(Readable, TheRowsOfAGridAreReadable) {
    showInAllColours([](QWidget& window) {
        for (auto* const grid : window.findChildren<ambrel::DataGrid*>()) {
            ASSERT_GT(grid->visibleRowCount(), 1);
            for (const bool hasFocus : {false, true}) {
                if (hasFocus) {
                    grid->setFocus(Qt::TabFocusReason);
                }
                const int column = grid->cellText(0, 0).isEmpty() ? 1 : 0;
                for (int row = 0; row < grid->visibleRowCount(); ++row) {
                    expectReadable(*grid, grid->cellRect(row, column).adjusted(2, 2, -2, -2),
                                   row == grid->currentRow() ? "the current row" : "another row");
                }
            }
        }
    });
}

TEST_P(Readable, ComboTextsAreReadableWithTheFocusAndWithout) {
    showInAllColours([](QWidget& window) {
        for (QWidget* const control : controlsOf(window)) {
            auto* const combo = qobject_cast<QComboBox*>(control);
            if (!combo || !combo->isEnabled() || combo->currentText().isEmpty()) {
                continue;
            }
            const QRect text(8, 5, combo->width() - 48, combo->height() - 10);
            expectReadable(*combo, text, "without the focus");
            ambrel::colourByPalette(*combo, true);
            expectReadable(*combo, text, "with the focus colour");
            ambrel::colourByPalette(*combo, false);
        }
    });
}

class ReadableSuggestions : public Readable {};

INSTANTIATE_TEST_SUITE_P(Form, ReadableSuggestions, ::testing::Values(Form::Clientes),
                         [](const auto& form) { return nameOf(form.param); });

TEST_P(ReadableSuggestions, TheRowsAreReadableChosenOrNot) {
    showInAllColours([](QWidget& window) {
        window.findChild<QLineEdit*>(QStringLiteral("EMunicipio"))->setFocus(Qt::TabFocusReason);
        type(window, QStringLiteral("madirx"));
        ASSERT_TRUE(QTest::qWaitFor([&] {
            const auto* const list = window.findChild<QListView*>(QStringLiteral("LSugerencias"));
            return list && list->isVisible();
        }));
        auto& list = *window.findChild<QListView*>(QStringLiteral("LSugerencias"));
        for (const char* const when : {"another row", "the chosen row"}) {
            const QRect row = list.visualRect(list.model()->index(0, 0));
            expectReadable(list, row.translated(list.viewport()->pos()).adjusted(2, 2, -2, -2), when);
            press(window, Qt::Key_Down);
        }
        press(window, Qt::Key_Escape);
        window.findChild<QLineEdit*>(QStringLiteral("EMunicipio"))->clear();
    });
}

class OwnLook : public Forms {};

/// A style sheet treats the colours of disabled controls in its own way.
TEST_F(OwnLook, ACardThatOnlyShowsIsReadableInTheHostsLook) {
    const QPalette usual = QApplication::palette();
    host::applyStyle(*qApp);
    show(Form::FichaViaConsulta, [](QWidget& window) {
        for (const char* const name : {"EVecindad", "DBEVia", "DBECodPostal"}) {
            auto* const edit = window.findChild<QLineEdit*>(QLatin1String(name));
            const DrawnText drawn = drawnIn(*edit, inside(*edit));
            EXPECT_GE(contrast(drawn.text, drawn.background), readableContrast) << name;
        }
    });
    qApp->setStyleSheet(QString());
    QApplication::setPalette(usual);
}

TEST_F(OwnLook, TheHostsColoursAreReadable) {
    const QPalette usual = QApplication::palette();
    const QFont font = QApplication::font();
    host::applyFixedLook(*qApp);
    const QPalette own = QApplication::palette();
    qApp->setStyleSheet(QString());
    QApplication::setFont(font);
    QApplication::setPalette(usual);
    using enum QPalette::ColorRole;
    for (const auto& [text, background] :
         {std::pair(WindowText, Window), std::pair(Text, Base), std::pair(ButtonText, Button),
          std::pair(HighlightedText, Highlight)}) {
        EXPECT_GE(contrast(own.color(text), own.color(background)), readableContrast) << text;
    }
}

} // namespace
} // namespace accessibility_tests
