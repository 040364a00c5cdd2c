// No text is cut, with the usual font and with a larger one. The build runs this on screens of several
// resolutions.
#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QFont>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <cstdlib>

#include "accessibility/CutTexts.h"
#include "accessibility/Forms.h"

namespace accessibility_tests {
namespace {

using Sentences = std::vector<std::string>;

class Sizes : public Forms, public ::testing::WithParamInterface<Form> {
protected:
    ~Sizes() override { QApplication::setFont(usual_); }

    void enlarge(double factor) {
        QFont larger = usual_;
        larger.setPointSizeF(usual_.pointSizeF() * factor);
        QApplication::setFont(larger);
    }

private:
    const QFont usual_ = QApplication::font();
};

constexpr double largerFont = 1.3;

INSTANTIATE_TEST_SUITE_P(Form, Sizes, ::testing::ValuesIn(allForms()),
                         [](const auto& form) { return nameOf(form.param); });

/// Fills in the longest contents of the tables, where they do not appear by themselves.
void fill(const QWidget& window) {
    for (const auto& [name, text] :
         {std::pair("ENumero", "123456"), std::pair("DBEImparIni", "99999"),
          std::pair("DBEImparFin", "99999"), std::pair("DBEParIni", "99998"), std::pair("DBEParFin", "99998"),
          std::pair("DBECodPostal", "28739"), std::pair("EVecindad", "GARGANTILLA DEL LOZOYA")}) {
        if (auto* const edit = window.findChild<QLineEdit*>(QLatin1String(name))) {
            edit->setText(QLatin1String(text));
        }
    }
    for (const auto& [name, part] :
         {std::pair("CBProvincia", "CRUZ"), std::pair("CBProvinciasAmbrel", "CRUZ"),
          std::pair("CBTipoVia", "URBANIZACION"), std::pair("CBProvincias", "LOZOYA")}) {
        if (auto* const combo = window.findChild<QComboBox*>(QLatin1String(name))) {
            combo->setCurrentIndex(combo->findText(QLatin1String(part), Qt::MatchContains));
        }
    }
}

/// A changed size may change another one, which is laid out at the next turn.
void settle() {
    for (int turn = 0; turn < 8; ++turn) {
        QCoreApplication::processEvents();
    }
}

TEST_P(Sizes, NothingIsCut) {
    show(GetParam(), [](QWidget& window) { EXPECT_EQ(cutTexts(window), Sentences()); });
}

TEST_P(Sizes, NothingIsCutWithTheLongestContents) {
    show(GetParam(), [](QWidget& window) {
        fill(window);
        settle();
        EXPECT_EQ(cutTexts(window), Sentences());
    });
}

TEST_P(Sizes, NothingIsCutWithALargerFont) {
    enlarge(largerFont);
    show(GetParam(), [](QWidget& window) {
        fill(window);
        settle();
        EXPECT_EQ(cutTexts(window), Sentences());
    });
}

TEST_P(Sizes, NothingIsCutInAFormMadeAsSmallAsItGoes) {
    show(GetParam(), [](QWidget& window) {
        window.resize(window.minimumSize());
        settle();
        EXPECT_EQ(cutTexts(window), Sentences());
    });
}

bool isScreenLargeEnough() {
    const QSize screen = QApplication::primaryScreen()->availableSize();
    return screen.width() >= 800 && screen.height() >= 500;
}

QFont desktopFont() { return QFont(QStringLiteral("DejaVu Sans"), 9); }

QFont largerDesktopFont() {
    QFont font = desktopFont();
    font.setPointSizeF(font.pointSizeF() * largerFont);
    return font;
}

void expectOnScreen(const QWidget& window) {
    const QSize room = window.screen()->availableSize() - QSize(4, 16);
    EXPECT_LE(window.width(), room.width());
    EXPECT_LE(window.height(), room.height());
}

/// The build also runs this on a screen of 800 × 500, as 1600 × 1000 pixels are at twice the size. A window
/// manager's title is small there: some lists have a minimum height of 480.
TEST_P(Sizes, FitsOnTheScreen) {
    if (!isScreenLargeEnough()) {
        GTEST_SKIP() << "wants a screen of at least 800 × 500";
    }
    QApplication::setFont(desktopFont());
    show(GetParam(), [](QWidget& window) {
        settle();
        expectOnScreen(window);
    });
}

TEST_P(Sizes, FitsOnTheScreenWithALargerFont) {
    if (!isScreenLargeEnough()) {
        GTEST_SKIP() << "wants a screen of at least 800 × 500";
    }
    QApplication::setFont(largerDesktopFont());
    show(GetParam(), [](QWidget& window) {
        settle();
        expectOnScreen(window);
    });
}

class SizesOfDialogs : public Sizes {};

INSTANTIATE_TEST_SUITE_P(Form, SizesOfDialogs,
                         ::testing::Values(Form::MunicipiLista, Form::BuscarDireccionPostal,
                                           Form::FichaViaNueva, Form::ImportarFichero,
                                           Form::ImportarMunicipio, Form::ImportarProvincia),
                         [](const auto& form) { return nameOf(form.param); });

/// A host may give all buttons wide margins.
TEST_P(SizesOfDialogs, FitOnTheScreenWithWideButtonsAndALargerFont) {
    if (!isScreenLargeEnough()) {
        GTEST_SKIP() << "wants a screen of at least 800 × 500";
    }
    QApplication::setFont(largerDesktopFont());
    qApp->setStyleSheet(QStringLiteral("QPushButton { min-width: 5.5em; padding: 5px 10px; }"));
    show(GetParam(), [](QWidget& window) {
        settle();
        expectOnScreen(window);
        EXPECT_EQ(cutTexts(window), Sentences());
    });
    qApp->setStyleSheet(QString());
}

/// Guards the runs on other resolutions, which would otherwise pass without having them.
TEST(SizesOfPixels, AreThoseThatTheRunAsksFor) {
    const char* const asked = std::getenv("QT_SCALE_FACTOR");
    EXPECT_DOUBLE_EQ(QApplication::primaryScreen()->devicePixelRatio(), asked ? std::atof(asked) : 1.0);
}

/// Tests the measure itself: it finds a text that has too little room.
TEST(SizesMeasured, AreThoseOfTheTexts) {
    QWidget window;
    auto* const label = new QLabel(QStringLiteral("Nombre del municipio"), &window);
    auto* const button = new QPushButton(QStringLiteral("&Aceptar"), &window);
    button->move(0, 100);
    window.resize(600, 400);
    window.show();
    EXPECT_EQ(cutTexts(window), Sentences());
    label->resize(20, label->height());
    EXPECT_EQ(cutTexts(window).size(), 1U);
    button->resize(button->width(), 5);
    EXPECT_EQ(cutTexts(window).size(), 2U);
}

} // namespace
} // namespace accessibility_tests
