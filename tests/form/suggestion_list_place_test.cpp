// A list of suggestions on the screen: its place, what happens to its window and box, what is read out.
#include <QAccessible>
#include <QDialog>
#include <QScreen>
#include <QScrollArea>
#include <memory>

#include "form/ListUnderABox.h"

namespace {

using ambrel::SuggestionList;
using ambrel::SuggestionRow;
using postal_tests::ListUnderABox;
using postal_tests::shownList;

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
    form.setWindowState(Qt::WindowMinimized);
    QApplication::processEvents();
    EXPECT_FALSE(shownList()) << "minimised";
    form.setWindowState(Qt::WindowNoState);
    reopen();
    form.hide();
    EXPECT_FALSE(shownList()) << "hidden";
}

TEST_F(ListUnderABox, StaysUnderItsBoxWhenTheWindowGrows) {
    show();
    box->setText("ALCALA");
    box->setFocus();
    press(Qt::Key_Down);
    ASSERT_TRUE(shownList());
    form.resize(form.size() + QSize(30, 20));
    QApplication::processEvents();
    ASSERT_TRUE(shownList());
    EXPECT_EQ(shownList()->window()->geometry().top(), box->mapToGlobal(QPoint(0, box->height())).y());
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

TEST_F(ListUnderABox, OpensInTheWindowToWhichItsBoxHasMoved) {
    show();
    type("cala");
    ASSERT_TRUE(list->isOpen());
    QWidget other;
    box->setParent(&other);
    ambrel::test::showActive(other);
    box->show();
    box->setFocus();
    type("x");
    press(Qt::Key_Backspace);
    press(Qt::Key_Down);
    ASSERT_TRUE(list->isOpen());
    EXPECT_EQ(shownList()->parentWidget(), &other);
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

TEST_F(ListOnTheScreen, AColumnIsAsWideAsItsWidestText) {
    for (const double points : {8.0, 8.3, 9.0, 9.4, 10.0, 11.2, 12.0, 13.7}) { // letters end between pixels
        QFont font = box->font();
        font.setPointSizeF(points);
        font.setHintingPreference(QFont::PreferNoHinting);
        box->setFont(font);
        const auto firstType = [&] {
            placeWithBoxAt(screen.topLeft());
            press(Qt::Key_Down);
            QListView& shown = *shownList();
            const QRect row = shown.visualRect(shown.model()->index(0, 0));
            const int width = QFontMetrics(font).horizontalAdvance("CL.");
            return shown.viewport()->grab(QRect(0, 0, width, row.height())).toImage();
        };
        all = {{"A", "CL", "MADRID", "28013"}};
        const QImage alone = firstType();
        all.push_back({"AB", "CALLE", "MADRID", "28013"});
        EXPECT_EQ(alone, firstType()) << points;
    }
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
