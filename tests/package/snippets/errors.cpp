#include <QString>

#include "package/AmbCodPostales.h"

// A host handles the faults that it can do something about; the others are for the user.
bool startEdit(dbase::Dataset& table) {
    try {
        table.edit();
        return true;
    } catch (const dbase::Error& error) {
        switch (error.code()) {
        case dbase::ErrorCode::RecordChanged: // another workstation was faster: show its change
            table.refresh();
            break;
        case dbase::ErrorCode::LockRefused: // another workstation is editing it
            break;
        default:
            throw;
        }
        Mensaje_Error(QString::fromUtf8(error.what()), QStringLiteral("Atención"));
        return false;
    }
}
