// The list of suggestions under any edit box, with real widgets and real keys.
#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QDialog>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QShortcut>
#include <QTest>
#include <QVBoxLayout>
#include <memory>

#include "dialogs/common/FormKeys.h"
#include "form/ShownList.h"
#include "form/SuggestionList.h"
#include "services/FocusEvents.h"
#include "services/KeyUpEvents.h"
#include "support/ShownWindow.h"
#include "support/Typing.h"

namespace {

using ambrel::SuggestionList;
using ambrel::SuggestionRow;
using postal_tests::shownList;
using Rows = SuggestionList::Rows;
using Occasion = SuggestionList::Occasion;

/// Suggests the rows whose names contain what was typed.
class ListUnderABox : public ::testing::Test {
protected:
    ListUnderABox() {
        auto* column = new QVBoxLayout(&form);
        column->addWidget(box);
        column->addWidget(next);
        list = new SuggestionList(
            box, [this](const QString& text, Occasion occasion) { return answer(text, occasion); });
    }

    std::optional<Rows> answer(const QString& text, Occasion occasion) {
        asked << text;
        occasions.push_back(occasion);
        if (unready > 0) {
            --unready;
            return std::nullopt;
        }
        Rows found;
        for (const SuggestionRow& row : all) {
            if (row.name.contains(text, Qt::CaseInsensitive)) {
                found.push_back(row);
            }
        }
        return found;
    }

    void show() {
        ambrel::test::showActive(form);
        box->setFocus();
    }
    void type(const QString& text) {
        ambrel::test::typeInto(*box, text);
        QApplication::processEvents();
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
        QApplication::processEvents();
    }
    void clickRow(int row) {
        QListView& shown = *shownList();
        QTest::mouseClick(shown.viewport(), Qt::LeftButton, {},
                          shown.visualRect(shown.model()->index(row, 0)).center());
    }

    Rows all{{"ALCALA", "CL", "MADRID", "28014", {}, {}},
             {"ALCALA DE GUADAIRA", "AV", "MADRID", "28021", {}, {}},
             {"GRAN VIA", "CL", "MADRID", "28013", {}, {}}};
    int unready = 0;
    QStringList asked;
    std::vector<Occasion> occasions;
    QWidget form;
    QLineEdit* box = new QLineEdit(&form);
    QLineEdit* next = new QLineEdit(&form);
    SuggestionList* list;
};

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

TEST_F(ListUnderABox, ClosesWithItsWindow) {
    show();
    const auto reopen = [this] {
        ambrel::test::showActive(form);
        box->setFocus();
        press(Qt::Key_Down);
        ASSERT_TRUE(list->isOpen());
    };
    box->setText("ALCALA");
    reopen();
    form.move(form.pos() + QPoint(30, 20));
    QApplication::processEvents();
    EXPECT_FALSE(shownList()) << "moved";
    reopen();
    form.resize(form.size() + QSize(30, 20));
    QApplication::processEvents();
    EXPECT_FALSE(shownList()) << "resized";
    reopen();
    form.setWindowState(Qt::WindowMinimized);
    QApplication::processEvents();
    EXPECT_FALSE(shownList()) << "minimised";
    form.setWindowState(Qt::WindowNoState);
    reopen();
    form.hide();
    EXPECT_FALSE(shownList()) << "hidden";
}

TEST_F(ListUnderABox, ClosesBelowADialog) {
    show();
    type("cala");
    ASSERT_TRUE(shownList());
    QDialog modal;
    modal.setModal(true);
    ambrel::test::showActive(modal);
    EXPECT_FALSE(shownList());
}

TEST_F(ListUnderABox, GoesWithItsBoxWhereverThatIsDestroyed) {
    show();
    type("cala");
    ASSERT_TRUE(shownList());
    delete box;
    EXPECT_FALSE(shownList());
    QTest::keyClick(next, Qt::Key_Down);

    auto window = std::make_unique<QWidget>();
    auto* const own = new QLineEdit(window.get());
    new SuggestionList(own, [&](const QString&, Occasion) { return all; });
    ambrel::test::showActive(*window);
    own->setFocus();
    ambrel::test::typeInto(*own, "x");
    QApplication::processEvents();
    ASSERT_TRUE(shownList());
    window.reset();
    EXPECT_FALSE(shownList());
}

TEST_F(ListUnderABox, IsDestroyedAloneWithoutATrace) {
    box->setAccessibleDescription("la calle");
    show();
    type("cala");
    ASSERT_TRUE(shownList());
    delete list;
    EXPECT_FALSE(shownList());
    EXPECT_EQ(box->accessibleDescription(), "la calle");
    press(Qt::Key_Down);
    EXPECT_EQ(box->text(), "cala");
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

TEST_F(ListUnderABox, FollowsABoxThatIsScrolled) {
    auto* const area = new QScrollArea(&form);
    auto* const page = new QWidget;
    page->setMinimumHeight(2000);
    auto* const own = new QLineEdit(page);
    own->move(10, 60);
    area->setWidget(page);
    area->setFixedHeight(200);
    form.layout()->addWidget(area);
    new SuggestionList(own, [&](const QString&, Occasion) { return all; });
    show();
    own->setFocus();
    ambrel::test::typeInto(*own, "x");
    QApplication::processEvents();
    ASSERT_TRUE(shownList());
    const int before = shownList()->y();
    page->move(0, -30);
    QApplication::processEvents();
    ASSERT_TRUE(shownList());
    EXPECT_EQ(shownList()->y(), before - 30);
}

class ListOnTheScreen : public ListUnderABox {
protected:
    /// The rectangle of the list with the box at a place of the screen.
    QRect placeWithBoxAt(QPoint place) {
        form.setWindowFlag(Qt::FramelessWindowHint);
        form.layout()->setContentsMargins(0, 0, 0, 0);
        form.move(place);
        box->setText("A");
        show();
        press(Qt::Key_Down);
        const QRect shown = shownList() ? shownList()->geometry() : QRect();
        list->close();
        return shown;
    }
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
};

TEST_F(ListOnTheScreen, LiesUnderTheBoxAndIsAtLeastAsWide) {
    const QRect place = placeWithBoxAt(screen.center());
    const QPoint corner = box->mapToGlobal(QPoint(0, box->height()));
    EXPECT_EQ(place.topLeft(), corner);
    EXPECT_GE(place.width(), box->width());
}

TEST_F(ListOnTheScreen, StaysInsideAtEveryEdge) {
    for (const QPoint corner :
         {screen.topLeft(), screen.topRight(), screen.bottomLeft(), screen.bottomRight()}) {
        const QPoint inside(std::min(corner.x(), screen.right() - 60),
                            std::min(corner.y(), screen.bottom() - 60));
        const QRect place = placeWithBoxAt(inside);
        ASSERT_TRUE(place.isValid());
        EXPECT_TRUE(screen.contains(place)) << place.x() << ',' << place.y();
        EXPECT_FALSE(place.intersects(QRect(box->mapToGlobal(QPoint(0, 0)), box->size())))
            << "covers the box";
    }
}

TEST_F(ListOnTheScreen, ManyRowsScroll) {
    all = Rows(60, SuggestionRow{"CALLE", "CL", "MADRID", "28001", {}, {}});
    const QRect place = placeWithBoxAt(screen.center());
    EXPECT_LT(place.height(), screen.height() / 2);
    press(Qt::Key_Down);
    press(Qt::Key_PageDown);
    press(Qt::Key_PageDown);
    EXPECT_GT(list->currentRow(), 10);
    EXPECT_TRUE(
        shownList()->viewport()->rect().intersects(shownList()->visualRect(shownList()->currentIndex())));
    press(Qt::Key_Up);
    EXPECT_LT(list->currentRow(), 59);
}

TEST_F(ListOnTheScreen, NoTextIsCutWhereThereIsRoom) {
    all = {{"A", "CL", "MADRID", "28013"}, {"AVENIDA LARGA", "AV", "ALCALA", "28001, 28002"}};
    form.resize(60, 40);
    placeWithBoxAt(screen.topLeft());
    press(Qt::Key_Down);
    QListView& shown = *shownList();
    const QImage narrow = shown.grab().toImage();
    shown.resize(shown.width() + 200, shown.height());
    QApplication::processEvents();
    // With more room only what stands right of the name moves: type and name look the same.
    const QRect left(0, 2, shown.fontMetrics().horizontalAdvance("CL AVENIDA LAR"), shown.height() - 4);
    EXPECT_EQ(shown.grab().toImage().copy(left), narrow.copy(left));
    const QRect right(narrow.width() - shown.fontMetrics().horizontalAdvance("28002"), 2,
                      shown.fontMetrics().horizontalAdvance("28002"), shown.height() - 4);
    EXPECT_EQ(shown.grab().toImage().copy(right.translated(200, 0)), narrow.copy(right));
}

/// What a screen reader finds.
class SpokenList : public ListUnderABox {
protected:
    [[nodiscard]] static QAccessibleInterface& spoken(QObject* object) {
        return *QAccessible::queryAccessibleInterface(object);
    }
    /// The rows that it takes for chosen.
    [[nodiscard]] static QStringList chosen() {
        const QAccessibleInterface& rows = spoken(shownList());
        QStringList texts;
        for (int row = 0; row < rows.childCount(); ++row) {
            if (const QAccessibleInterface& child = *rows.child(row);
                child.state().selected && child.state().focused) {
                texts << child.text(QAccessible::Name);
            }
        }
        return texts;
    }
};

TEST_F(SpokenList, IsDescribedWithItsBoxWhileItIsOpen) {
    box->setAccessibleDescription("de la dirección");
    show();
    type("cala");
    EXPECT_EQ(spoken(box).text(QAccessible::Description),
              "2 sugerencias; la flecha abajo elige. de la dirección");
    type(" ");
    EXPECT_EQ(spoken(box).text(QAccessible::Description),
              "1 sugerencia; la flecha abajo elige. de la dirección");
    press(Qt::Key_Escape);
    EXPECT_EQ(spoken(box).text(QAccessible::Description), "de la dirección");
}

TEST_F(SpokenList, TheChosenRowIsReadWhole) {
    show();
    type("cala");
    EXPECT_EQ(chosen(), QStringList());
    press(Qt::Key_Down);
    EXPECT_EQ(chosen(), QStringList{"CL ALCALA, MADRID, 28014"});
    press(Qt::Key_Down);
    EXPECT_EQ(chosen(), QStringList{"AV ALCALA DE GUADAIRA, MADRID, 28021"});
}

TEST_F(SpokenList, HasARoleAndAName) {
    show();
    type("cala");
    EXPECT_EQ(spoken(shownList()).role(), QAccessible::List);
    EXPECT_EQ(spoken(shownList()).text(QAccessible::Name), "Sugerencias");
    EXPECT_EQ(spoken(shownList()).childCount(), 2);
}

} // namespace
