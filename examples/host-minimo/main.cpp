// The smallest host: shows the address form, and without a screen types an address into it.
#include <QApplication>
#include <QKeyEvent>
#include <cstdio>
#include <exception>

#include "AddressForm.h"

namespace {

/// Presses keys as a user would; whoever has the focus gets them.
void type(const QString& text, int lastKey) {
    const auto press = [](int key, const QString& character) {
        for (const QEvent::Type step : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(step, key, Qt::NoModifier, character);
            if (QWidget* focused = QApplication::focusWidget())
                QApplication::sendEvent(focused, &event);
        }
        QApplication::processEvents();
    };
    for (const QChar character : text)
        press(character.unicode(), character);
    press(lastKey, {});
}

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() < 2) {
        std::fprintf(stderr, "uso: host-minimo CARPETA [--prueba]\n");
        return 2;
    }
    try {
        dbase::setDatabaseFolder("DB", arguments[1].toStdString());
        AddressForm form;
        form.show();
        if (!arguments.contains("--prueba") && QApplication::platformName() != "offscreen")
            return QApplication::exec();
        form.activateWindow();
        QApplication::processEvents();
        for (const char* text : {"MADRID", "ALCALA", "100"})
            type(QLatin1String(text), Qt::Key_Tab);
        std::printf("%s\n", qUtf8Printable(form.address()));
        return form.address() == "ALCALA, 100 - 28009 MADRID" ? 0 : 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "host-minimo: %s\n", error.what());
        return 2;
    }
}
