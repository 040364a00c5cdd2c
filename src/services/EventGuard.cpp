// Showing the exceptions that would otherwise end the program.
#include "services/EventGuard.h"

#include <QtGlobal>
#include <exception>
#include <new>

#include "services/Mensaje.h"

namespace ambrel {
namespace {

void show(const QString& text) noexcept {
    try {
        Mensaje_Error(text, QStringLiteral("Atención"));
    } catch (...) {
        // The user cannot be informed, but the log at least keeps it.
        qCritical("%s", qUtf8Printable(text));
    }
}

} // namespace

void runGuarded(const std::function<void()>& body) noexcept {
    try {
        body();
    } catch (const SilentAbort&) {
        // The thrower has already informed the user.
    } catch (const std::bad_alloc&) {
        show(QStringLiteral("No queda memoria para esta operación."));
    } catch (const std::exception& error) {
        show(QString::fromUtf8(error.what()));
    } catch (...) {
        show(QStringLiteral("Se ha producido un error inesperado."));
    }
}

} // namespace ambrel
