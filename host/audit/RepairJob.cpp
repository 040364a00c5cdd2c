// Runs a repair.
#include "host/audit/RepairJob.h"

#include <exception>

#include "directory/audit/TableRepair.h"

namespace host {
namespace {

using namespace ambrel::directory;

struct Cancelled {};

QString exampleOf(const RepairedRow& row) {
    const std::string_view table = tableName(row.table);
    return QStringLiteral("%1 (%2 %3)")
        .arg(QString::fromStdString(row.change),
             QString::fromUtf8(table.data(), static_cast<qsizetype>(table.size())))
        .arg(row.record);
}

} // namespace

void RepairJob::start() {
    run_.start([this] { work(); });
}

void RepairJob::work() {
    RepairNews news;
    QString error;
    const auto post = [this, &news](std::uint64_t done, std::uint64_t total) {
        if (run_.isCancelled()) {
            throw Cancelled();
        }
        news.share = static_cast<double>(done) / static_cast<double>(total);
        QMetaObject::invokeMethod(
            this, [this, sent = news] { Q_EMIT progressed(sent); }, Qt::QueuedConnection);
    };
    const auto observe = [&news](const RepairedRow& row, RepairOutcome outcome) {
        const bool isRepaired = outcome == RepairOutcome::Planned || outcome == RepairOutcome::Done;
        ++(isRepaired ? news.rows : news.left);
        if (isRepaired && news.examples.size() < mostExamples) {
            news.examples << exampleOf(row);
        }
    };
    try {
        const RepairOptions options{.kinds = {what_}, .progress = post};
        if (kind_ == RepairKind::DryRun) {
            planRepairs(options, observe);
        } else {
            repairTables(options, {.order = "Revisar las tablas: reparar " + std::string(className(what_))},
                         observe, news.undoFile);
        }
    } catch (const Cancelled&) {
        news.wasCancelled = true;
    } catch (const std::exception& failure) {
        error = QString::fromUtf8(failure.what());
    }
    QMetaObject::invokeMethod(
        this, [this, news, error] { Q_EMIT finished(news, error); }, Qt::QueuedConnection);
}

} // namespace host
