// The application, made when the first benchmark needs it.
#include "application.h"

#include <QApplication>

namespace bench {

void ensureApplication() {
    static int argumentCount = 1;
    static char name[] = "ambrel_bench";
    static char* arguments[] = {name, nullptr};
    if (qApp == nullptr) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        new QApplication(argumentCount, arguments); // for the rest of the run
    }
}

} // namespace bench
