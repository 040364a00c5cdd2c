// Choosing among the suggestions under an edit box, with real keys and clicks.
#include <QPushButton>
#include <QShortcut>

#include "form/ListUnderABox.h"

namespace {

using ambrel::SuggestionList;
using ambrel::SuggestionRow;
using postal_tests::ListUnderABox;
using postal_tests::shownList;

TEST_F(ListUnderABox, DownAndUpGoThroughTheRowsAndBackToTheText) {
    show();
    type("cala");
    std::vector<int> rows;
    for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Down, Qt::Key_Up, Qt::Key_Up, Qt::Key_Up}) {
        press(key);
        rows.push_back(list->currentRow());
    }
    EXPECT_EQ(rows, (std::vector{0, 1, -1, 1, 0, -1}));
    EXPECT_EQ(box->text(), "cala");
}

TEST_F(ListUnderABox, ReturnTakesTheChosenRow) {
    show();
    type("guada");
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_EQ(box->text(), "ALCALA DE GUADAIRA");
    EXPECT_FALSE(list->isOpen());
    EXPECT_TRUE(box->hasFocus());
}

TEST_F(ListUnderABox, TheKeypadsKeysDoWhatTheOthersDo) {
    show();
    type("guada");
    press(Qt::Key_Down, Qt::KeypadModifier);
    EXPECT_EQ(list->currentRow(), 0);
    press(Qt::Key_Enter, Qt::KeypadModifier);
    EXPECT_EQ(box->text(), "ALCALA DE GUADAIRA");
}

TEST_F(ListUnderABox, TabTakesTheChosenRowAndGoesOn) {
    show();
    type("guada");
    press(Qt::Key_Down);
    press(Qt::Key_Tab);
    EXPECT_EQ(box->text(), "ALCALA DE GUADAIRA");
    EXPECT_TRUE(next->hasFocus());
}

TEST_F(ListUnderABox, ReturnWithoutAChosenRowIsTheFormsKey) {
    int returns = 0;
    QObject::connect(box, &QLineEdit::returnPressed, box, [&] { ++returns; });
    show();
    type("guada");
    ASSERT_TRUE(list->isOpen());
    press(Qt::Key_Return);
    EXPECT_EQ(returns, 1);
    EXPECT_EQ(box->text(), "guada");
}

TEST_F(ListUnderABox, TheReturnThatTakesARowIsNotTheFormsKey) {
    int returns = 0;
    QObject::connect(box, &QLineEdit::returnPressed, box, [&] { ++returns; });
    show();
    type("guada");
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_EQ(returns, 0);
    press(Qt::Key_Return);
    EXPECT_EQ(returns, 1);
}

TEST_F(ListUnderABox, TabWithoutAChosenRowLeavesTheTextAlone) {
    show();
    type("guada");
    ASSERT_TRUE(list->isOpen());
    press(Qt::Key_Tab);
    EXPECT_EQ(box->text(), "guada");
    EXPECT_TRUE(next->hasFocus());
    EXPECT_FALSE(list->isOpen());
    EXPECT_FALSE(shownList());
}

TEST_F(ListUnderABox, PageKeysGoToTheListBeforeTheWindowsShortcuts) {
    int ups = 0, downs = 0;
    QObject::connect(new QShortcut(Qt::Key_PageUp, &form), &QShortcut::activated, &form, [&] { ++ups; });
    QObject::connect(new QShortcut(Qt::Key_PageDown, &form), &QShortcut::activated, &form, [&] { ++downs; });
    show();
    press(Qt::Key_PageDown);
    press(Qt::Key_PageUp);
    EXPECT_EQ(ups + downs, 2) << "without the list they are the window's";
    type("a");
    ASSERT_TRUE(list->isOpen());
    press(Qt::Key_PageDown);
    EXPECT_EQ(list->currentRow(), 2);
    press(Qt::Key_PageUp);
    EXPECT_EQ(list->currentRow(), 0);
    EXPECT_EQ(ups + downs, 2);
}

TEST_F(ListUnderABox, AClickTakesItsRow) {
    show();
    type("cala");
    clickRow(1);
    EXPECT_EQ(box->text(), "ALCALA DE GUADAIRA");
    EXPECT_FALSE(list->isOpen());
    EXPECT_TRUE(box->hasFocus());
    EXPECT_TRUE(form.isActiveWindow());
}

TEST_F(ListUnderABox, TheMouseAboveARowDoesNotChooseIt) {
    show();
    type("cala");
    QTest::mouseMove(shownList()->viewport(),
                     shownList()->visualRect(shownList()->model()->index(1, 0)).center());
    QApplication::processEvents();
    EXPECT_EQ(list->currentRow(), -1);
    press(Qt::Key_Return);
    EXPECT_EQ(box->text(), "cala");
}

TEST_F(ListUnderABox, TheSecondClickOfADoubleClickPressesNothingUnderTheList) {
    auto* const button = new QPushButton(&form);
    button->setMinimumHeight(300);
    form.layout()->addWidget(button);
    int clicks = 0;
    QObject::connect(button, &QPushButton::clicked, button, [&] { ++clicks; });
    next->hide();
    show();
    type("cala");
    QListView& shown = *shownList();
    const QPoint row = shown.viewport()->mapToGlobal(shown.visualRect(shown.model()->index(1, 0)).center());
    ASSERT_TRUE(button->rect().contains(button->mapFromGlobal(row)));
    QCursor::setPos(row);
    clickRow(1);
    EXPECT_EQ(box->text(), "ALCALA DE GUADAIRA");
    const auto clickUnder = [&](QPoint place) {
        QTest::mouseClick(form.windowHandle(), Qt::LeftButton, {}, form.mapFromGlobal(place));
    };
    clickUnder(row);
    EXPECT_EQ(clicks, 0);
    clickUnder(row);
    EXPECT_EQ(clicks, 1) << "the next click is one like any other";
    EXPECT_EQ(box->text(), "ALCALA DE GUADAIRA");
}

TEST_F(ListUnderABox, UndoGivesBackWhatWasTyped) {
    show();
    type("gran v");
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    ASSERT_EQ(box->text(), "GRAN VIA");
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(box->text(), "gran v");
}

TEST_F(ListUnderABox, ALetterTypedAfterChoosingUnchoosesTheRow) {
    show();
    type("cala");
    press(Qt::Key_Down);
    ASSERT_EQ(list->currentRow(), 0);
    QTest::keyPress(box, Qt::Key_Space);
    press(Qt::Key_Return);
    EXPECT_EQ(box->text(), "cala ");
}

TEST_F(ListUnderABox, DownBeforeTheLastLetterIsReleasedChoosesAmongTheRowsOfTheWholeText) {
    show();
    type("ala");
    ASSERT_EQ(shownList()->model()->rowCount(), 2);
    QTest::keyPress(box, Qt::Key_Space);
    press(Qt::Key_Down);
    ASSERT_TRUE(list->isOpen());
    EXPECT_EQ(shownList()->model()->rowCount(), 1);
    EXPECT_EQ(list->currentRow(), 0);
}

TEST_F(ListUnderABox, ATakerMayDestroyTheBox) {
    auto window = std::make_unique<QWidget>();
    auto* const own = new QLineEdit(window.get());
    new SuggestionList(
        own, [&](const QString&, Occasion) { return all; }, [own](const SuggestionRow&) { delete own; });
    ambrel::test::showActive(*window);
    own->setFocus();
    ambrel::test::typeInto(*own, "x");
    QApplication::processEvents();
    press(Qt::Key_Down);
    press(Qt::Key_Tab);
    EXPECT_TRUE(window->findChildren<QLineEdit*>().isEmpty());
}

TEST_F(ListUnderABox, ATakersRowCarriesTheHostsValue) {
    QVariant taken;
    auto* const own = new QLineEdit(&form);
    form.layout()->addWidget(own);
    new SuggestionList(
        own,
        [](const QString&, Occasion) {
            return Rows{{"UNA", {}, {}, {}, {}, 1}, {"DOS", {}, {}, {}, {}, 2}};
        },
        [&](const SuggestionRow& row) { taken = row.value; });
    show();
    own->setFocus();
    press(Qt::Key_X);
    ambrel::test::typeInto(*own, "x");
    QApplication::processEvents();
    press(Qt::Key_Up);
    press(Qt::Key_Return);
    EXPECT_EQ(taken, QVariant(2));
    EXPECT_NE(own->text(), "DOS") << "the taker decides";
}

} // namespace
