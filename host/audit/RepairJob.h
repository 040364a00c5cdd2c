// One repair of a class of findings, or what it would change, in a thread of its own.
#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <string>

#include "directory/audit/Finding.h"
#include "host/BackgroundRun.h"

namespace host {

enum class RepairKind { DryRun, Writing };

struct RepairNews {
    double share = 0;       // of the rows that are read
    std::uint64_t rows = 0; // changed, or to be changed
    std::uint64_t left = 0; // not touched, because somebody else has them
    QStringList examples;   // the first ones, such as "VIA=PEÑA (POSTAL 12)"
    std::string undoFile;   // empty if there is nothing to undo
    bool wasCancelled = false;
};

/// Runs with tables of its own and reports to the thread that it belongs to.
class RepairJob : public QObject {
    Q_OBJECT
public:
    static constexpr int mostExamples = 3;

    RepairJob(ambrel::directory::FindingClass what, RepairKind kind) : what_(what), kind_(kind) {}

    [[nodiscard]] ambrel::directory::FindingClass what() const { return what_; }
    [[nodiscard]] RepairKind kind() const { return kind_; }
    void start();
    /// Rows that are repaired by then stay so.
    void cancel() { run_.cancel(); }

Q_SIGNALS:
    void progressed(const host::RepairNews& news);
    /// The last one. `error`: in Spanish; empty if there is none.
    void finished(const host::RepairNews& news, const QString& error);

private:
    void work();

    ambrel::directory::FindingClass what_;
    RepairKind kind_;
    BackgroundRun run_;
};

} // namespace host
