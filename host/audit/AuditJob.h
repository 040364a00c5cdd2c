// One audit of MUNICIPI and POSTAL, in a thread of its own.
#pragma once

#include <QObject>
#include <QString>
#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include "directory/audit/AuditReport.h"
#include "host/BackgroundRun.h"

namespace host {

/// Findings of each class, by severity.
using ClassCounts = std::array<std::array<std::uint64_t, 3>, ambrel::directory::findingClassCount>;

/// What has happened since the last time.
struct AuditNews {
    std::uint64_t done = 0, total = 0;                // rows
    ClassCounts counts{};                             // from the beginning
    std::vector<ambrel::directory::Finding> findings; // the first ones of each class
};

struct AuditEnd {
    bool wasCancelled = false;
    QString error; // in Spanish; empty if there is none
    ambrel::directory::AuditTotals totals;
    std::shared_ptr<const ambrel::directory::AuditReport> report; // null unless the audit is whole
};

/// Findings of each class that are kept for the list.
inline constexpr std::uint64_t keptOfEachClass = 100'000;

/// Runs with tables of its own and reports to the thread that it belongs to.
class AuditJob : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;

    void start();
    void cancel() { run_.cancel(); }

Q_SIGNALS:
    void progressed(const host::AuditNews& news);
    /// The last one.
    void finished(const host::AuditNews& news, const host::AuditEnd& end);

private:
    void work();

    BackgroundRun run_;
};

} // namespace host
