// The list of suggestions under any edit box, with real widgets and real keys: when it opens, what it asks,
// and when it closes.
#include <QClipboard>
#include <QDialog>
#include <QPushButton>

#include "dialogs/common/FormKeys.h"
#include "form/ListUnderABox.h"
#include "services/KeyUpEvents.h"

namespace {

using ambrel::SuggestionList;
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

TEST_F(ListUnderABox, DownAsksForTheWholeTextAlsoWhereAllOfItIsSelected) {
    box->setText("guada");
    show();
    press(Qt::Key_End);
    press(Qt::Key_Home, Qt::ShiftModifier);
    press(Qt::Key_Down);
    ASSERT_TRUE(list->isOpen());
    EXPECT_EQ(asked.back(), "guada");
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

} // namespace
