// Boxes, buttons, marks and the focus are seen in light, dark and high-contrast colours.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QStyleOptionButton>
#include <QTableView>
#include <QTest>

#include "accessibility/Colours.h"
#include "accessibility/Contrast.h"
#include "accessibility/FormControls.h"
#include "accessibility/Forms.h"
#include "dialogs/common/DataGrid.h"
#include "host/Style.h"
#include "host/ValidationMark.h"
#include "services/TagProperty.h"

namespace accessibility_tests {
namespace {

constexpr double seenContrast = 3; // of what is not a text

class Seen : public Forms, public ::testing::WithParamInterface<Form> {
protected:
    ~Seen() override {
        qApp->setStyleSheet(QString());
        QApplication::setPalette(usual_);
    }

    /// In the host's look.
    void showInAllColours(const Step& step) {
        for (const char* const name : {"Claros", "Oscuros", "ContrasteNegro", "ContrasteBlanco"}) {
            SCOPED_TRACE(name);
            QApplication::setPalette(paletteOf(colours(name)));
            host::applyStyle(*qApp);
            show(GetParam(), step);
        }
    }

    static void expectSeen(QWidget& widget, const QRect& part, const std::string& what) {
        const DrawnText drawn = drawnIn(widget, part);
        EXPECT_GE(contrast(drawn.text, drawn.background), seenContrast)
            << what << ": " << drawn.text.name().toStdString() << " on "
            << drawn.background.name().toStdString();
    }

private:
    const QPalette usual_ = QApplication::palette();
};

INSTANTIATE_TEST_SUITE_P(Form, Seen, ::testing::ValuesIn(allForms()),
                         [](const auto& form) { return nameOf(form.param); });

/// What surrounds the upper edge, and the edge itself.
QRect edgeOf(const QWidget& control, QWidget& window) {
    return {control.mapTo(&window, QPoint(control.width() / 2, -3)), QSize(1, 4)};
}

QRect indicatorOf(const QRadioButton& button) {
    QStyleOptionButton option;
    option.initFrom(&button);
    return button.style()->subElementRect(QStyle::SE_RadioButtonIndicator, &option, &button);
}

TEST_P(Seen, BoxesAndButtonsHaveAnOutline) {
    showInAllColours([](QWidget& window) {
        for (QWidget* const control : controlsOf(window)) {
            const std::string name = control->objectName().toStdString();
            if (!control->isEnabled() || control->hasFocus()) {
                continue;
            }
            if (const auto* const radio = qobject_cast<QRadioButton*>(control)) {
                const QRect place = indicatorOf(*radio);
                expectSeen(*control, {place.center().x(), place.top() - 3, 1, 5}, name);
            } else if (qobject_cast<QLineEdit*>(control) || qobject_cast<QComboBox*>(control) ||
                       qobject_cast<QPushButton*>(control)) {
                expectSeen(window, edgeOf(*control, window), name);
            }
        }
    });
}

TEST_P(Seen, TheFocusIsSeenBeforeTheFirstTab) {
    showInAllColours([](QWidget& window) {
        QWidget* const first = window.focusWidget();
        if (!first || qobject_cast<ambrel::DataGrid*>(first)) {
            return;
        }
        const QImage with = first->grab().toImage();
        first->clearFocus();
        const QImage without = first->grab().toImage();
        EXPECT_TRUE(with != without) << first->objectName().toStdString();
        first->setFocus(Qt::OtherFocusReason);
    });
}

/// A line within the current row: at the edge of a row it would be as good as a part of the next one.
TEST_P(Seen, ATableThatHasTheFocusOutlinesItsCurrentRow) {
    showInAllColours([](QWidget& window) {
        for (auto* const table : window.findChildren<QTableView*>()) {
            if (!table->isVisible() || !table->currentIndex().isValid()) {
                continue;
            }
            const std::string name = table->objectName().toStdString();
            auto* const grid = qobject_cast<ambrel::DataGrid*>(table->parentWidget());
            QWidget& target = grid ? static_cast<QWidget&>(*grid) : *table;
            const QColor highlight = table->palette().color(QPalette::Active, QPalette::Highlight);
            const QRect row = table->visualRect(table->currentIndex());
            const auto edge = [&](int depth) {
                return drawnIn(*table->viewport(), {row.left() + 20, row.top() + depth, 1, 1}).background;
            };
            window.setFocus();
            EXPECT_EQ(edge(1), highlight) << name << " without the focus";
            target.setFocus(Qt::TabFocusReason);
            EXPECT_EQ(edge(0), highlight) << name;
            EXPECT_GE(contrast(edge(1), highlight), seenContrast) << name;
            EXPECT_EQ(edge(2), highlight) << name;
        }
    });
}

class SeenFocus : public Seen {};

/// Forms whose controls ask nothing when the focus leaves them.
INSTANTIATE_TEST_SUITE_P(Form, SeenFocus,
                         ::testing::Values(Form::MunicipiLista, Form::BuscarDireccionPostal,
                                           Form::FichaViaConsulta, Form::MensajePregunta, Form::Clientes,
                                           Form::Rutina, Form::ValidarFichero, Form::ValidarResultado,
                                           Form::RevisarTablas),
                         [](const auto& form) { return nameOf(form.param); });

TEST_P(SeenFocus, TheFocusOfButtonsAndListsStandsOutFromTheirOutline) {
    showInAllColours([](QWidget& window) {
        for (QWidget* const control : controlsOf(window)) {
            if (!control->isEnabled() || control->focusPolicy() == Qt::NoFocus ||
                !(qobject_cast<QComboBox*>(control) || qobject_cast<QPushButton*>(control))) {
                continue;
            }
            const auto besideOutline = [&] {
                return drawnIn(*control, {control->width() / 2, 1, 1, 1}).background;
            };
            control->clearFocus();
            const QColor without = besideOutline();
            control->setFocus(Qt::TabFocusReason);
            ASSERT_TRUE(control->hasFocus()) << control->objectName().toStdString();
            EXPECT_GE(contrast(besideOutline(), without), seenContrast)
                << control->objectName().toStdString();
        }
    });
}

class SeenMarks : public Seen {};

INSTANTIATE_TEST_SUITE_P(Form, SeenMarks, ::testing::Values(Form::Clientes),
                         [](const auto& form) { return nameOf(form.param); });

TEST_P(SeenMarks, WarningsAndTicksAreSeen) {
    showInAllColours([](QWidget& window) {
        auto& box = *window.findChild<QLineEdit*>(QStringLiteral("EVia"));
        box.setText(QStringLiteral("ALCALA"));
        for (const int tag : {0, 1}) {
            ambrel::setTag(box, tag);
            const auto wanted =
                tag == 0 ? host::ValidationMark::State::NotValidated : host::ValidationMark::State::Validated;
            int marks = 0;
            for (auto* const mark : window.findChildren<host::ValidationMark*>()) {
                if (mark->state() == wanted) {
                    ++marks;
                    const QPoint place = mark->mapTo(&window, QPoint());
                    expectSeen(window, {place, mark->size()}, "a mark");
                }
            }
            EXPECT_GT(marks, 0);
        }
    });
}

class SeenAnswers : public Seen {};

INSTANTIATE_TEST_SUITE_P(Form, SeenAnswers, ::testing::Values(Form::MensajePregunta),
                         [](const auto& form) { return nameOf(form.param); });

TEST_P(SeenAnswers, TheAnswerOfReturnIsMarked) {
    showInAllColours([](QWidget& window) {
        const auto edge = [&](const char* name) {
            auto* const button = window.findChild<QPushButton*>(QLatin1String(name));
            return drawnIn(*button, {button->width() / 2, 0, 1, 1}).background;
        };
        EXPECT_NE(edge("BBSi"), edge("BBNo"));
    });
}

class OwnColours : public Forms {};

TEST_F(OwnColours, AHighContrastOfTheDesktopStays) {
    const QPalette usual = QApplication::palette();
    for (const char* const name : {"ContrasteNegro", "ContrasteBlanco", "Oscuros"}) {
        const QPalette desktop = paletteOf(colours(name));
        QApplication::setPalette(desktop);
        host::applyStyle(*qApp);
        EXPECT_EQ(QApplication::palette().color(QPalette::Highlight), desktop.color(QPalette::Highlight))
            << name;
        EXPECT_EQ(QApplication::palette().color(QPalette::Window), desktop.color(QPalette::Window)) << name;
    }
    qApp->setStyleSheet(QString());
    QApplication::setPalette(usual);
}

} // namespace
} // namespace accessibility_tests
