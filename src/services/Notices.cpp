// Notices come while tables are locked, so they are shown later.
#include "services/Notices.h"

#include <QApplication>
#include <QMetaObject>
#include <cstdio>

#include "dbase/system/notices.h"
#include "services/EventGuard.h"
#include "services/Mensaje.h"

namespace ambrel {

void showNotices() {
    dbase::setNoticeHandler([](const std::string& text) {
        auto* const application = qobject_cast<QApplication*>(QCoreApplication::instance());
        if (application == nullptr) { // a host without windows
            std::fprintf(stderr, "%s\n", text.c_str());
            return;
        }
        const auto show = guarded([message = QString::fromStdString(text)] {
            Mensaje_Info(nullptr, message, QStringLiteral("Tablas"));
        });
        QMetaObject::invokeMethod(application, show, Qt::QueuedConnection);
    });
}

} // namespace ambrel
