// The list of suggestions under any edit box, with real widgets and real keys.
#include <QClipboard>
#include <QDialog>
#include <QPushButton>
#include <QShortcut>

#include "dialogs/common/FormKeys.h"
#include "form/ListUnderABox.h"
#include "services/KeyUpEvents.h"

namespace {

using ambrel::SuggestionList;
using ambrel::SuggestionRow;
using postal_tests::ListUnderABox;
using postal_tests::shownList;

TEST_F(ListUnderABox, OpensOnTypingWithoutACurrentRow) {
    show();
    type("cala");
    ASSERT_TRUE(list->isOpen());
    EXPECT_EQ(shownList()->model()->rowCount(), 2);
    EXPECT_EQ(list->currentRow(), -1);
    EXPECT_EQ(occasions.back(), Occasion::Typed);
    EXPECT_TRUE(box->hasFocus());
    EXPECT_TRUE(form.isActiveWindow());
}

TEST_F(ListUnderABox, ClosesWhenNothingIsSuggestedAnyMore) {
    show();
    type("cala");
    ASSERT_TRUE(list->isOpen());
    type("x");
    EXPECT_FALSE(list->isOpen());
}

TEST_F(ListUnderABox, EnteringABoxThatHasATextDoesNotOpenIt) {
    box->setText("ALCALA");
    show();
    press(Qt::Key_Shift);
    press(Qt::Key_Home);
    QApplication::processEvents();
    EXPECT_FALSE(list->isOpen());
    EXPECT_TRUE(asked.isEmpty());
}

TEST_F(ListUnderABox, DownOpensItAndChoosesTheFirstRow) {
    box->setText("ALCALA");
    show();
    press(Qt::Key_Down);
    ASSERT_TRUE(list->isOpen());
    EXPECT_EQ(list->currentRow(), 0);
    EXPECT_EQ(occasions, std::vector{Occasion::Asked});
}

TEST_F(ListUnderABox, DownWithoutSuggestionsIsTheFormsKey) {
    class Form : public QWidget {
    public:
        int downs = 0;

    protected:
        void keyPressEvent(QKeyEvent* event) override { downs += event->key() == Qt::Key_Down ? 1 : 0; }
    } host;
    auto* const own = new QLineEdit(&host);
    Rows rows;
    new SuggestionList(own, [&](const QString&, Occasion) { return rows; });
    ambrel::test::showActive(host);
    own->setFocus();
    own->setText("x");
    press(Qt::Key_Down);
    EXPECT_EQ(host.downs, 1);
    rows = all;
    press(Qt::Key_Down);
    EXPECT_EQ(host.downs, 1);
    EXPECT_TRUE(shownList());
}

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

TEST_F(ListUnderABox, EscapeClosesTheListAlone) {
    QDialog dialog;
    auto* const own = new QLineEdit(&dialog);
    new SuggestionList(own, [&](const QString&, Occasion) { return all; });
    ambrel::test::showActive(dialog);
    own->setFocus();
    ambrel::test::typeInto(*own, "x");
    QApplication::processEvents();
    ASSERT_TRUE(shownList());
    press(Qt::Key_Escape);
    EXPECT_FALSE(shownList());
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(own->text(), "x");
    press(Qt::Key_Escape);
    EXPECT_FALSE(dialog.isVisible());
}

TEST_F(ListUnderABox, ADialogThatPreviewsKeysGetsThemOnlyWithoutTheList) {
    QDialog dialog;
    auto* const own = new QLineEdit(&dialog);
    auto* const cancel = new QPushButton(&dialog);
    int cancelled = 0;
    QObject::connect(cancel, &QPushButton::clicked, cancel, [&] { ++cancelled; });
    std::vector<std::uint16_t> seen;
    new ambrel::FormKeys(dialog, *cancel, [&](std::uint16_t key, Qt::KeyboardModifiers) {
        seen.push_back(key);
        return ambrel::enterMovesOn(dialog, key);
    });
    new SuggestionList(own, [&](const QString&, Occasion) { return all; });
    ambrel::test::showActive(dialog);
    own->setFocus();
    ambrel::test::typeInto(*own, "x");
    QApplication::processEvents();
    ASSERT_TRUE(shownList());
    seen.clear();
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_EQ(own->text(), "ALCALA");
    EXPECT_TRUE(own->hasFocus());
    EXPECT_TRUE(seen.empty());
    press(Qt::Key_Down);
    ASSERT_TRUE(shownList());
    press(Qt::Key_Escape);
    EXPECT_EQ(cancelled, 0);
    press(Qt::Key_Escape);
    EXPECT_EQ(cancelled, 1);
}

TEST_F(ListUnderABox, StaysClosedAfterEscapeUntilTheTextChanges) {
    show();
    type("ala");
    press(Qt::Key_Escape);
    EXPECT_FALSE(list->isOpen());
    press(Qt::Key_Left);
    EXPECT_FALSE(list->isOpen());
    press(Qt::Key_Delete);
    EXPECT_TRUE(list->isOpen());
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

TEST_F(ListUnderABox, AClickElsewhereClosesItAndIsNotLost) {
    auto* const button = new QPushButton(&form);
    button->setFocusPolicy(Qt::NoFocus);
    form.layout()->addWidget(button);
    int clicks = 0;
    QObject::connect(button, &QPushButton::clicked, button, [&] { ++clicks; });
    show();
    type("cala");
    ASSERT_TRUE(list->isOpen());
    QTest::mouseClick(button, Qt::LeftButton);
    EXPECT_EQ(clicks, 1);
    EXPECT_FALSE(list->isOpen());
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

TEST_F(ListUnderABox, LooksForRowsAfterTheHandlersOfTheRelease) {
    ambrel::KeyUpEvents::watch(box, [&](std::uint16_t&, Qt::KeyboardModifiers) {
        if (box->text() == "gr") {
            box->insert("an via");
            box->setSelection(8, -6);
        }
    });
    show();
    type("g");
    EXPECT_EQ(asked, QStringList{"g"});
    QTest::keyPress(box, Qt::Key_R, {}, 0);
    QApplication::processEvents();
    EXPECT_EQ(asked, QStringList{"g"}) << "the letter is not released yet";
    QTest::keyRelease(box, Qt::Key_R);
    QApplication::processEvents();
    EXPECT_EQ(asked, (QStringList{"g", "gr"})) << "the completed tail was not typed";
}

TEST_F(ListUnderABox, RowsThatAreNotReadyComeLater) {
    show();
    unready = 3;
    type("cala");
    EXPECT_FALSE(list->isOpen());
    ASSERT_TRUE(QTest::qWaitFor([&] { return list->isOpen(); }));
    EXPECT_EQ(list->currentRow(), -1);
}

TEST_F(ListUnderABox, DownIsRememberedWhileTheRowsAreNotReady) {
    box->setText("ALCALA");
    show();
    unready = 3;
    press(Qt::Key_Down);
    ASSERT_TRUE(QTest::qWaitFor([&] { return list->isOpen(); }));
    EXPECT_EQ(list->currentRow(), 0);
    press(Qt::Key_Shift);
    QTest::qWait(20);
    EXPECT_EQ(occasions.size(), 4U) << "another key asks nothing";
}

TEST_F(ListUnderABox, RowsThatComeAfterTheBoxWasLeftAreNotShown) {
    show();
    unready = 1000;
    type("cala");
    press(Qt::Key_Tab);
    unready = 0;
    const auto before = asked.size();
    QTest::qWait(30);
    EXPECT_EQ(asked.size(), before);
    EXPECT_FALSE(shownList());
}

TEST_F(ListUnderABox, APastedTextIsLookedForWithoutAKey) {
    show();
    QGuiApplication::clipboard()->setText("guada");
    box->paste();
    EXPECT_TRUE(QTest::qWaitFor([&] { return list->isOpen(); }));
}

TEST_F(ListUnderABox, ATextThatTheProgramSetsClosesIt) {
    show();
    type("cala");
    ASSERT_TRUE(list->isOpen());
    box->setText("OTRA");
    QApplication::processEvents();
    EXPECT_FALSE(list->isOpen());
}

TEST_F(ListUnderABox, AReadOnlyBoxHasNoList) {
    box->setText("ALCALA");
    box->setReadOnly(true);
    show();
    press(Qt::Key_Down);
    EXPECT_FALSE(list->isOpen());
    box->setReadOnly(false);
    press(Qt::Key_Down);
    ASSERT_TRUE(list->isOpen());
    box->setReadOnly(true);
    EXPECT_FALSE(list->isOpen());
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
