// Focus colouring.
#include "services/Rvarias.h"

#include <gtest/gtest.h>

#include <QLineEdit>
#include <vector>

namespace {

QColor background(const QWidget& control) { return control.palette().color(QPalette::Base); }
QColor foreground(const QWidget& control) { return control.palette().color(QPalette::Text); }

QPalette colours(const QColor& base, const QColor& text) {
    QPalette palette;
    palette.setColor(QPalette::Base, base);
    palette.setColor(QPalette::Text, text);
    return palette;
}

TEST(FocusColour, DiffersFromTheNormalOneAndGoesAgain) {
    QLineEdit box;
    const QColor normal = background(box);
    TomaFocoControl(&box);
    EXPECT_NE(background(box), normal);
    DejaFocoControl(&box);
    EXPECT_EQ(background(box), normal);
}

TEST(FocusColour, TakenTwiceIsGivenBackOnce) {
    QLineEdit box;
    const QColor normal = background(box);
    TomaFocoControl(&box);
    TomaFocoControl(&box);
    DejaFocoControl(&box);
    EXPECT_EQ(background(box), normal);
    DejaFocoControl(&box);
    EXPECT_EQ(background(box), normal);
}

TEST(FocusColour, GivesAControlItsOwnColoursBack) {
    QLineEdit box;
    box.setPalette(colours(Qt::cyan, Qt::darkBlue));
    TomaFocoControl(&box);
    EXPECT_NE(background(box), QColor(Qt::cyan));
    EXPECT_EQ(foreground(box), QColor(Qt::darkBlue));
    DejaFocoControl(&box);
    EXPECT_EQ(background(box), QColor(Qt::cyan));
    EXPECT_EQ(foreground(box), QColor(Qt::darkBlue));
}

TEST(FocusColour, LetsAControlFollowItsParentAgain) {
    QWidget window;
    window.setPalette(colours(Qt::yellow, Qt::black));
    auto* const box = new QLineEdit(&window);
    TomaFocoControl(box);
    DejaFocoControl(box);
    EXPECT_EQ(background(*box), QColor(Qt::yellow));
    window.setPalette(colours(Qt::cyan, Qt::black));
    EXPECT_EQ(background(*box), QColor(Qt::cyan));
}

TEST(FocusColour, IsDarkWhereTheColoursAreDark) {
    QLineEdit box;
    box.setPalette(colours(QColor(30, 30, 30), Qt::white));
    TomaFocoControl(&box);
    EXPECT_NE(background(box), QColor(30, 30, 30));
    EXPECT_LT(background(box).lightness(), 80);
    EXPECT_EQ(foreground(box), QColor(Qt::white));
}

TEST(FocusColour, IsLightWhereTheColoursAreLight) {
    QLineEdit box;
    box.setPalette(colours(Qt::white, Qt::black));
    TomaFocoControl(&box);
    EXPECT_GT(background(box).lightness(), 200);
}

TEST(FocusColour, AHostMayColourInItsOwnWay) {
    std::vector<bool> told;
    ambrel::setFocusColouring([&](QWidget&, bool focused) { told.push_back(focused); });
    QLineEdit box;
    const QColor normal = background(box);
    TomaFocoControl(&box);
    EXPECT_EQ(background(box), normal);
    DejaFocoControl(&box);
    ambrel::setFocusColouring({});
    EXPECT_EQ(told, (std::vector<bool>{true, false}));
}

TEST(FocusColour, ANullControlDoesNoHarm) {
    TomaFocoControl(nullptr);
    DejaFocoControl(nullptr);
}

} // namespace
