// One run of a file of addresses through the validator, in a thread of its own.
#pragma once

#include <QObject>
#include <QString>
#include <cstdint>
#include <string>
#include <vector>

#include "address/AddressFile.h"
#include "host/BackgroundRun.h"

namespace host {

/// What to run. Paths in UTF-8.
struct ValidationOrder {
    std::string input, output;
    std::string report; // empty for none
    ambrel::AddressFileOptions options;
};

/// A row that is not settled.
struct UnsettledRow {
    std::uint64_t number = 0, line = 0; // in the file, from 1
    QString given;                      // the address as it stands there
    ambrel::JudgedAddress judged;
};

/// What has happened since the last time.
struct ValidationNews {
    ambrel::AddressFileTotals totals; // from the beginning
    std::uint64_t judged = 0;         // rows; they count in the totals once those before them are judged
    double share = 0;                 // of the file; negative if unknown
    std::vector<UnsettledRow> rows;   // the first ones of each verdict
};

/// Rows of each verdict that are kept for the list.
inline constexpr std::uint64_t keptOfEachVerdict = 1000;

/// Runs with tables of its own and reports to the thread that it belongs to. The result appears under its
/// name only when it is whole; a cancelled or failed run leaves whatever had the name.
class ValidationJob : public QObject {
    Q_OBJECT
public:
    explicit ValidationJob(ValidationOrder order, QObject* parent = nullptr);

    void start();
    void cancel() { run_.cancel(); }

Q_SIGNALS:
    void progressed(const host::ValidationNews& news);
    /// The last one. `error`: why the run failed, in Spanish; empty if it did not.
    void finished(const host::ValidationNews& news, const QString& error);

private:
    void work();

    ValidationOrder order_;
    BackgroundRun run_;
};

} // namespace host
