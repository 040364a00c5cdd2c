// Chooses the folder of the tables and creates them where there are none.
#include "host/DataFolder.h"

#include <QCoreApplication>
#include <QDir>
#include <QStandardPaths>
#include <filesystem>
#include <stdexcept>
#include <system_error>

#include "dbase/system/databases.h"
#include "dbase/system/error.h"
#include "dbase/system/system_reason.h"
#include "host/HostTable.h"
#include "services/Confamb.h"
#include "services/Pantalla.h"

namespace host {
namespace {

constexpr const char* packageDatabase = "DB";

[[noreturn]] void refuse(const QString& text) { throw std::runtime_error(text.toStdString()); }

[[noreturn]] void refuseFolder(const QString& folder, const std::error_code& failure) {
    refuse(QStringLiteral("No se puede crear la carpeta «%1»: %2.")
               .arg(folder, QString::fromStdString(dbase::systemReason(failure.value()))));
}

/// The folder that the configuration names; empty when it names none.
QString configuredFolder() {
    try {
        return QString::fromStdString(Config.DatabasePath(packageDatabase));
    } catch (const dbase::Error& error) {
        if (error.code() != dbase::ErrorCode::NotFound) {
            throw;
        }
        return {};
    }
}

/// Creates the tables in a folder beside the final one, which appears only when they are complete.
void createUserTables(const QString& folder, const SampleCreator& createSample) {
    const auto progress = MuestraMensaje(QStringLiteral("Creando las tablas de muestra…"));
    QDir unfinished(QStringLiteral("%1.%2").arg(folder).arg(QCoreApplication::applicationPid()));
    std::error_code failure;
    std::filesystem::create_directories(unfinished.path().toStdString(), failure);
    if (failure) {
        refuseFolder(unfinished.path(), failure);
    }
    try {
        createSample(unfinished.path().toStdString());
        createHostTable(unfinished.path().toStdString(), FirstRows::Sample);
    } catch (...) {
        // Half a set of tables is useless; the fault itself is passed on to the user.
        unfinished.removeRecursively();
        CierraMensaje(progress);
        throw;
    }
    CierraMensaje(progress);
    std::filesystem::rename(unfinished.path().toStdString(), folder.toStdString(), failure);
    if (!failure) {
        return;
    }
    unfinished.removeRecursively();
    // Another instance, started at the same moment, may have created it first.
    if (!QDir(folder).exists()) {
        refuseFolder(folder, failure);
    }
}

} // namespace

QString userDataFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + QStringLiteral("/datos");
}

void chooseFolder(const QString& given, const SampleCreator& createSample) {
    QString folder = given.isEmpty() ? configuredFolder() : QDir(given).absolutePath();
    if (folder.isEmpty()) {
        folder = userDataFolder();
        if (!QDir(folder).exists()) {
            createUserTables(folder, createSample);
        }
    }
    Config.setDatabase(hostDatabase, folder.toStdString());
    if (!dbase::findTableFile(folder.toStdString(), "MUNICIPI")) {
        refuse(QStringLiteral("En la carpeta «%1» no está la tabla MUNICIPI.").arg(folder));
    }
    createHostTable(folder.toStdString(), FirstRows::None);
}

} // namespace host
