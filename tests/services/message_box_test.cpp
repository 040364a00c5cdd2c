// The real message box, answered by real keys while it is shown.
#include "services/MessageBox.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <functional>
#include <memory>

#include "dbase/dataset/dataset.h"
#include "dbase/lock/locks.h"
#include "dbase/lock/read_scope.h"
#include "support/ShownWindow.h"
#include "support/TableTest.h"

namespace {

using ambrel::MessageAnswer;
using ambrel::MessageBox;
using ambrel::MessageKind;
using ambrel::showMessageBox;

/// Shows a box and, once it is there, lets `act` check it and close it.
MessageAnswer show(const MessageBox& box, const std::function<void(QMessageBox&)>& act) {
    QTimer::singleShot(0, [&act] {
        auto* const shown = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        ASSERT_TRUE(shown);
        act(*shown);
    });
    return showMessageBox(box);
}

std::function<void(QMessageBox&)> press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    return [=](QMessageBox& shown) { QTest::keyClick(&shown, key, modifiers); };
}

MessageBox question(MessageAnswer defaultButton) {
    return {.kind = MessageKind::Question,
            .text = "¿Desea ver la lista?",
            .line = "ATENCIÓN",
            .title = "Atención",
            .owner = {},
            .defaultButton = defaultButton};
}

const MessageBox notice{
    .kind = MessageKind::Error, .text = "Falta\rla vía", .line = {}, .title = "Error", .owner = {}};

TEST(RealMessageBox, EnterPressesTheDefaultButton) {
    EXPECT_EQ(show(question(MessageAnswer::Yes), press(Qt::Key_Return)), MessageAnswer::Yes);
    EXPECT_EQ(show(question(MessageAnswer::No), press(Qt::Key_Return)), MessageAnswer::No);
    EXPECT_EQ(show(notice, press(Qt::Key_Return)), MessageAnswer::Accept);
}

TEST(RealMessageBox, EscapeIsNo) {
    EXPECT_EQ(show(question(MessageAnswer::Yes), press(Qt::Key_Escape)), MessageAnswer::No);
    EXPECT_EQ(show(notice, press(Qt::Key_Escape)), MessageAnswer::Accept);
}

TEST(RealMessageBox, CloseBoxIsNo) {
    EXPECT_EQ(show(question(MessageAnswer::Yes), [](QMessageBox& shown) { shown.close(); }),
              MessageAnswer::No);
}

TEST(RealMessageBox, HasSpanishButtonsThatScriptsFind) {
    show(question(MessageAnswer::Yes), [](QMessageBox& shown) {
        EXPECT_EQ(shown.objectName(), "Mensaje");
        ASSERT_TRUE(shown.findChild<QPushButton*>("BBSi"));
        EXPECT_EQ(shown.findChild<QPushButton*>("BBSi")->text(), "&Sí");
        EXPECT_EQ(shown.findChild<QPushButton*>("BBNo")->text(), "&No");
        shown.reject();
    });
    show(notice, [](QMessageBox& shown) {
        ASSERT_TRUE(shown.findChild<QPushButton*>("BBAceptar"));
        EXPECT_EQ(shown.findChild<QPushButton*>("BBAceptar")->text(), "&Aceptar");
        EXPECT_EQ(shown.buttons().size(), 1);
        shown.reject();
    });
}

TEST(RealMessageBox, ButtonsAreClickedByMouse) {
    const auto click = [](const char* name) {
        return [name](QMessageBox& shown) {
            QTest::mouseClick(shown.findChild<QPushButton*>(name), Qt::LeftButton);
        };
    };
    EXPECT_EQ(show(question(MessageAnswer::No), click("BBSi")), MessageAnswer::Yes);
    EXPECT_EQ(show(question(MessageAnswer::Yes), click("BBNo")), MessageAnswer::No);
}

TEST(RealMessageBox, ShowsTextLineTitleAndIcon) {
    show(question(MessageAnswer::Yes), [](QMessageBox& shown) {
        EXPECT_EQ(shown.text(), "¿Desea ver la lista?");
        EXPECT_EQ(shown.informativeText(), "ATENCIÓN");
        EXPECT_EQ(shown.windowTitle(), "Atención");
        EXPECT_FALSE(shown.iconPixmap().isNull());
        EXPECT_EQ(shown.iconPixmap().devicePixelRatio(), qApp->devicePixelRatio());
        EXPECT_EQ(shown.accessibleDescription(), "¿Desea ver la lista?\nATENCIÓN");
        shown.reject();
    });
}

TEST(RealMessageBox, CarriageReturnsBreakLines) {
    show(notice, [](QMessageBox& shown) {
        EXPECT_EQ(shown.text(), "Falta\nla vía");
        shown.reject();
    });
}

TEST(RealMessageBox, ShowsTheWholeNameOfAFileThatIsWiderThanTheScreen) {
    MessageBox box = notice;
    box.text = "/datos/clientes-de-" + QString("delegacion_de_madrid_").repeated(12) + ".csv: no existe";
    box.line = QString("x").repeated(300);
    show(box, [&](QMessageBox& shown) {
        for (const auto* const label : shown.findChildren<QLabel*>()) {
            if (!label->text().isEmpty()) {
                EXPECT_LE(label->minimumSizeHint().width(), label->width()) << label->text().toStdString();
            }
        }
        EXPECT_EQ(shown.text().remove(QChar(0x200b)), box.text);
        EXPECT_EQ(shown.accessibleDescription(), box.text + "\n" + box.line);
        shown.reject();
    });
}

TEST(RealMessageBox, ShowsMarkupAsItIs) {
    MessageBox box = notice;
    box.text = "<b>calle</b>";
    show(box, [](QMessageBox& shown) {
        EXPECT_EQ(shown.textFormat(), Qt::PlainText);
        shown.reject();
    });
}

TEST(RealMessageBox, BelongsToTheOwnersWindow) {
    QWidget window;
    auto* const control = new QWidget(&window);
    MessageBox box = notice;
    box.owner = control;
    show(box, [&](QMessageBox& shown) {
        EXPECT_EQ(shown.parentWidget(), &window);
        shown.reject();
    });
}

TEST(RealMessageBox, WithoutOwnerBelongsToTheActiveWindow) {
    QWidget window;
    ambrel::test::showActive(window);
    show(notice, [&](QMessageBox& shown) {
        EXPECT_EQ(shown.parentWidget(), &window);
        shown.reject();
    });
}

TEST(RealMessageBox, SurvivesTheEndOfItsOwner) {
    auto window = std::make_unique<QWidget>();
    MessageBox box = question(MessageAnswer::Yes);
    box.owner = window.get();
    EXPECT_EQ(show(box, [&](QMessageBox&) { window.reset(); }), MessageAnswer::Cancel);
}

TEST(MessageShower, ReplacesTheRealBoxAndComesBack) {
    const auto before = ambrel::setMessageShower([](const MessageBox&) { return MessageAnswer::Yes; });
    EXPECT_EQ(ambrel::ask(notice), MessageAnswer::Yes);
    ambrel::setMessageShower({});
    QTimer::singleShot(0, [] { QTest::keyClick(QApplication::activeModalWidget(), Qt::Key_Escape); });
    EXPECT_EQ(ambrel::ask(question(MessageAnswer::Yes)), MessageAnswer::No);
    ambrel::setMessageShower(before);
}

/// A table that is read in a scope while a host's own function asks.
class MessageInAReadScope : public ambrel::test::TableTest {};

TEST_F(MessageInAReadScope, KeepsNoLockWhileAHostsOwnFunctionAsks) {
    createTable(ambrel::test::defineTable("ONE", {"CODE C6"}, {"CODE"}), {{"1000"}});
    dbase::Dataset table("DB", "ONE", "CODE");
    table.open();
    const auto isLocked = [&] {
        return dbase::openFile(folder / "ONE.MDX", dbase::OpenMode::ReadOnly)
            ->isLockedByOthers(dbase::structureLock);
    };
    bool wasLocked = true;
    const ambrel::MessageShower before = ambrel::setMessageShower([&](const MessageBox&) {
        wasLocked = isLocked();
        return MessageAnswer::Accept;
    });
    {
        const dbase::ReadScope scope;
        ASSERT_TRUE(table.seek({{"CODE", "1000"}}, dbase::SeekMode::Exact));
        EXPECT_TRUE(isLocked());
        ambrel::ask(question(MessageAnswer::Yes));
    }
    ambrel::setMessageShower(before);
    EXPECT_FALSE(wasLocked);
}

} // namespace
