// What only a real X server with a window manager shows: keyboard focus, and the contents of the screen.
#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <QTimer>
#include <QVBoxLayout>
#include <optional>

#include "services/Mensaje.h"
#include "services/ModalLoop.h"
#include "services/Pantalla.h"
#include "support/Desktop.h"
#include "support/ShownWindow.h"

namespace {

class UnderAWindowManager : public ::testing::Test {
protected:
    void SetUp() override {
        if (QGuiApplication::platformName() != "xcb") {
            GTEST_SKIP() << "wants Xvfb and openbox (scripts/setup installs them)";
        }
        auto* const layout = new QVBoxLayout(&window);
        layout->addWidget(box);
        window.resize(400, 300);
        ambrel::test::showActive(window);
    }

    /// True if the screen shows all of a window as it draws itself.
    static bool isOnScreen(QWidget& shown) {
        const QRect place(shown.mapToGlobal(QPoint()), shown.size());
        QScreen& screen = *shown.screen();
        const QPixmap seen = screen.grabWindow(0, place.x(), place.y(), place.width(), place.height());
        constexpr auto format = QImage::Format_RGB32;
        return seen.toImage().convertToFormat(format) == shown.grab().toImage().convertToFormat(format);
    }

    QWidget window;
    QLineEdit* box = new QLineEdit;
};

TEST_F(UnderAWindowManager, TheKeyboardIsBackAfterADialogThatClosesTogetherWithItsQuestion) {
    constexpr int often = 20; // a faulty window manager loses it half of the time
    for (int time = 0; time < often; ++time) {
        QDialog card(&window);
        QTimer::singleShot(0, &card, [&card] {
            ASSERT_TRUE(QTest::qWaitForWindowActive(&card));
            QTimer::singleShot(0, &card, [] {
                QWidget* const question = QApplication::activeModalWidget();
                ASSERT_TRUE(QTest::qWaitForWindowActive(question));
                ASSERT_TRUE(QTest::qWaitForWindowExposed(question));
                ASSERT_TRUE(QTest::qWaitFor([&] { return isOnScreen(*question); }));
                QTest::keyClick(question, Qt::Key_Return);
            });
            Mensaje_Info(&card, "¿Desea cancelar?", "Atención");
            card.reject();
        });
        ambrel::execModal(card);
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window)) << "the " << time + 1 << "th time";
    }
}

TEST_F(UnderAWindowManager, TheProgressWindowIsDrawnWhenItIsThere) {
    const ambrel::ProgressWindow progress = MuestraMensaje("Importando el listado de provincias");
    EXPECT_TRUE(isOnScreen(*progress));
    CierraMensaje(progress);
}

TEST_F(UnderAWindowManager, TheProgressWindowIsWholeWhenItsTextHasGrown) {
    const ambrel::ProgressWindow progress = MuestraMensaje("Importando");
    const QString name = "Importando el listado de vías del municipio de SANTA CRUZ DE LA SIERRA ";
    for (int times = 1; times < 4; ++times) {
        CambiaMensaje(name.repeated(times), progress);
        EXPECT_TRUE(isOnScreen(*progress)) << times;
    }
    CambiaMensaje("MADRID", progress);
    EXPECT_TRUE(isOnScreen(*progress));
    CierraMensaje(progress);
}

} // namespace

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    std::optional<ambrel::test::Desktop> desktop;
    if (!GTEST_FLAG_GET(list_tests)) {
        desktop.emplace();
    } else {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
