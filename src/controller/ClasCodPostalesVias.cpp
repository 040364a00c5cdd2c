// The controller's operations that add, change and delete streets.
#include <exception>
#include <utility>

#include "controller/ClasCodPostales.h"
#include "controller/StreetGroup.h"
#include "controller/StreetKeyAllocation.h"
#include "controller/StreetRecord.h"
#include "data/CodPostalesDM.h"
#include "services/EventGuard.h"
#include "services/Mensaje.h"
#include "services/Ruttb.h"
#include "services/Text.h"

namespace {

QString attention() { return QStringLiteral("Atención"); }

void reportNoStreets() {
    Mensaje_Error(QStringLiteral("No hay vias introducidas que modificar"),
                  QStringLiteral("Inserte primero una via."));
}

void reportFixedStreet(const QString& text) { Mensaje_Error(text, QStringLiteral("Via no modificable.")); }

bool isDeletionWanted(const QString& street) {
    const QString question = QStringLiteral("¿Seguro que desea borrar la via %1 de la base de datos?");
    return Mensaje_SiNo(question.arg(street), QStringLiteral("Eliminar Via"), attention()) == answeredYes;
}

void reportOthersAdding() {
    Mensajes(0, QStringLiteral("Repita nuevamente la última operación"), 0,
             QStringLiteral("Acceso concurrente"));
}

} // namespace

bool TClassCodPostales::attempt(const std::function<bool()>& operation) {
    streetFailure_.clear();
    if (group_ != nullptr) {
        return operation();
    }
    try {
        return operation();
    } catch (const ambrel::SilentAbort&) {
        // Already shown: no failure to show later.
    } catch (const std::exception& failure) {
        streetFailure_ = QString::fromUtf8(failure.what());
    }
    return false;
}

bool TClassCodPostales::attemptOrCancel(const std::function<bool()>& operation) {
    const bool done = attempt(operation);
    if (!streetFailure_.isEmpty()) {
        DM->tbPostal.cancel();
    }
    return done;
}

void TClassCodPostales::showStreetFailure() {
    if (const QString text = std::exchange(streetFailure_, QString()); !text.isEmpty()) {
        Mensaje_Error(Padre, text, attention());
    }
}

bool TClassCodPostales::AnadirVia() {
    return attemptOrCancel([this] {
        ambrel::beginStreet(*DM);
        return true;
    });
}

bool TClassCodPostales::ModificarVia() {
    return attempt([this] {
        if (DM->tbPostal.isEmpty()) {
            reportNoStreets();
            return false;
        }
        if (!ambrel::isUserStreet(*DM)) {
            reportFixedStreet(QStringLiteral("No puede modificar los datos de esta via"));
            return false;
        }
        DM->tbPostal.edit();
        return true;
    });
}

bool TClassCodPostales::BorrarVia(bool ask, bool) {
    return attemptOrCancel([this, ask] {
        if (DM->tbPostal.isEmpty()) {
            reportNoStreets();
            DM->tbPostal.cancel();
            // Deliberate: to callers an empty table means that nothing is left to delete.
            return true;
        }
        if (!ambrel::isUserStreet(*DM)) {
            reportFixedStreet(QStringLiteral("No puede borrar los datos de esta via"));
            return false;
        }
        if (ask && !isDeletionWanted(ambrel::fromWindows1252(DM->tbPostalVIA.view()))) {
            return false;
        }
        TBDelete(DM->tbPostal);
        return true;
    });
}

bool TClassCodPostales::AceptarVia(dbase::Durability durability) {
    return attempt([this, durability] {
        if (!ambrel::hasStreetName(*DM)) {
            Mensaje_Error(QStringLiteral("Rellene el campo Nombre de la Via"), QStringLiteral("ATENCIÓN:"));
            DM->tbPostal.cancel();
            return false;
        }
        if (DM->tbPostal.state() == dbase::DatasetState::Insert) {
            return PostInsert(durability);
        }
        DM->tbPostal.post(durability);
        return true;
    });
}

bool TClassCodPostales::CancelarVia() {
    if (Mensaje_NoSi(QStringLiteral("¿Desea cancelar esta operación (S/N)?"),
                     QStringLiteral("Esta modificando los datos de una via"), attention()) != answeredYes) {
        return false;
    }
    DM->tbPostal.cancel();
    return true;
}

bool TClassCodPostales::PostInsert(dbase::Durability durability) {
    if (group_ != nullptr) {
        group_->post(durability);
        return true;
    }
    if (ambrel::postUnderFreeKey(DM->tbPostal, DM->tbPostalCODIGO1, durability)) {
        return true;
    }
    reportOthersAdding();
    throw ambrel::SilentAbort();
}
