// Runs the validation of a file and collects what a window shows of it.
#include "host/validation/ValidationJob.h"

#include <QFileInfo>
#include <QSaveFile>
#include <QStringList>
#include <memory>
#include <stdexcept>
#include <utility>

#include "address/ValidationReport.h"
#include "loading/failure.h"
#include "services/Confamb.h"
#include "services/Text.h"

namespace host {
namespace {

/// The parts as they stand in the file, in the order in which addresses are written.
QString writtenAddress(const ambrel::GivenAddress& given) {
    QStringList street, place, parts;
    for (const std::string* part : {&given.type, &given.street, &given.number}) {
        street << ambrel::fromWindows1252(*part).simplified();
    }
    for (const std::string* part : {&given.postalCode, &given.municipality}) {
        place << ambrel::fromWindows1252(*part).simplified();
    }
    for (QStringList* list : {&street, &place}) {
        list->removeAll(QString());
    }
    parts << ambrel::fromWindows1252(given.line).simplified() << street.join(' ')
          << ambrel::fromWindows1252(given.rest).simplified() << place.join(' ')
          << ambrel::fromWindows1252(given.province).simplified();
    parts.removeAll(QString());
    return parts.join(QStringLiteral(", "));
}

/// The file of the result, until it is whole.
class ResultFile {
public:
    explicit ResultFile(const std::string& path) : file_(QString::fromStdString(path)) {
        if (!file_.open(QIODevice::WriteOnly)) {
            fail();
        }
    }
    void write(std::string_view text) {
        if (file_.write(text.data(), static_cast<qint64>(text.size())) != static_cast<qint64>(text.size())) {
            fail();
        }
    }
    void finish() {
        if (!file_.commit()) {
            fail();
        }
    }

private:
    [[noreturn]] void fail() const {
        throw loading::Failure("no se puede escribir " + file_.fileName().toStdString() + ": " +
                               file_.errorString().toStdString());
    }
    QSaveFile file_;
};

} // namespace

ValidationJob::ValidationJob(ValidationOrder order, QObject* parent)
    : QObject(parent), order_(std::move(order)) {}

void ValidationJob::start() {
    run_.start([this] { work(); });
}

void ValidationJob::work() {
    ValidationNews news;
    QString error;
    const auto collect = [&news](const ambrel::ValidatedRow& row) {
        const ambrel::Verdict verdict = row.judged.verdict;
        const std::uint64_t before = news.totals.verdicts.at(static_cast<std::size_t>(verdict))++;
        ++news.totals.rows;
        if (!ambrel::isSettled(verdict) && before < keptOfEachVerdict) {
            news.rows.push_back({row.number, row.line, writtenAddress(row.given), row.judged});
        }
    };
    const auto post = [this, &news](const ambrel::AddressFileProgress& progress) {
        news.judged = progress.rows;
        news.share = progress.share;
        ValidationNews sent = news;
        news.rows.clear();
        QMetaObject::invokeMethod(
            this, [this, sent = std::move(sent)] { Q_EMIT progressed(sent); }, Qt::QueuedConnection);
        return !run_.isCancelled();
    };
    try {
        std::unique_ptr<ambrel::ValidationReport> report;
        if (!order_.report.empty()) {
            ambrel::ValidationReport::requireWritable(order_.report);
            report = std::make_unique<ambrel::ValidationReport>(ambrel::ValidationRun{
                .input = QFileInfo(QString::fromStdString(order_.input)).fileName().toStdString(),
                .tables = Config.DatabasePath("DB"),
                .threshold = order_.options.validation.threshold,
                .provinceName = [names = std::make_shared<ambrel::AddressValidator>("DB")](
                                    const std::string& province) { return names->provinceName(province); }});
        }
        ambrel::ValidationReport::requireWritable(order_.output); // its errors are in Spanish
        ResultFile result(order_.output);
        const auto totals =
            ambrel::validateAddressFile(ambrel::openAddressFile(order_.input), order_.options,
                                        {.write = [&](std::string_view text) { result.write(text); },
                                         .row =
                                             [&](const ambrel::ValidatedRow& row) {
                                                 collect(row);
                                                 if (report) {
                                                     report->add(row);
                                                 }
                                             },
                                         .progress = post});
        news.totals.wasCancelled = totals.wasCancelled;
        if (!totals.wasCancelled) {
            result.finish();
            if (report) {
                report->write(order_.report);
            }
        }
    } catch (const std::exception& failure) {
        error = QString::fromUtf8(failure.what());
    }
    QMetaObject::invokeMethod(
        this, [this, news = std::move(news), error] { Q_EMIT finished(news, error); }, Qt::QueuedConnection);
}

} // namespace host
