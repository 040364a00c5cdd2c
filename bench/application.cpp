// The application that benchmarks with widgets need.
#include "application.h"

#include <QApplication>
#include <QKeyEvent>

namespace bench {

void ensureApplication() {
    static int argumentCount = 1;
    static char name[] = "ambrel_bench";
    static char* arguments[] = {name, nullptr};
    if (qApp == nullptr) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        new QApplication(argumentCount, arguments); // lives for the rest of the run
    }
}

void typeLetter(QWidget& target, QChar letter) {
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent event(type, letter.unicode(), Qt::NoModifier, letter);
        QCoreApplication::sendEvent(&target, &event);
    }
}

} // namespace bench
