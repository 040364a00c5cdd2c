// Runs an audit and collects what a window shows of it.
#include "host/audit/AuditJob.h"

#include <chrono>
#include <map>
#include <string>
#include <utility>

#include "address/AddressValidator.h"
#include "services/Confamb.h"

namespace host {
namespace {

using namespace ambrel::directory;

constexpr auto newsInterval = std::chrono::milliseconds(60);

struct Cancelled {};

/// The names of all provinces: the report is written in another thread than the one that read them.
std::function<std::string(const std::string&)> provinceNames() {
    ambrel::AddressValidator tables("DB");
    std::map<std::string, std::string> names;
    for (int province = 1; province <= 52; ++province) {
        const std::string code = std::to_string(100 + province).substr(1);
        names[code] = tables.provinceName(code);
    }
    return [names = std::move(names)](const std::string& code) {
        const auto name = names.find(code);
        return name == names.end() ? std::string() : name->second;
    };
}

/// What is collected between two reports to the window.
class Collector {
public:
    Collector(AuditReport& report, AuditNews& news) : report_(report), news_(news) {}

    void add(const Finding& finding) {
        auto& counts = news_.counts.at(static_cast<std::size_t>(finding.kind));
        if (counts[0] + counts[1] + counts[2] < keptOfEachClass) {
            news_.findings.push_back(finding);
        }
        ++counts.at(static_cast<std::size_t>(finding.severity));
        report_.add(finding);
    }
    /// Whether it is time to show something.
    bool isDue() {
        const auto now = std::chrono::steady_clock::now();
        if (now - last_ < newsInterval) {
            return false;
        }
        last_ = now;
        return true;
    }

private:
    AuditReport& report_;
    AuditNews& news_;
    std::chrono::steady_clock::time_point last_ = std::chrono::steady_clock::now();
};

} // namespace

void AuditJob::start() {
    run_.start([this] { work(); });
}

void AuditJob::work() {
    AuditNews news;
    AuditEnd end;
    try {
        const auto report = std::make_shared<AuditReport>(
            AuditRun{.tables = Config.DatabasePath("DB"), .provinceName = provinceNames()});
        Collector collector(*report, news);
        const auto post = [&](std::uint64_t done, std::uint64_t total) {
            if (run_.isCancelled()) {
                throw Cancelled();
            }
            news.done = done;
            news.total = total;
            if (collector.isDue()) {
                AuditNews sent = news;
                news.findings.clear();
                QMetaObject::invokeMethod(
                    this, [this, sent = std::move(sent)] { Q_EMIT progressed(sent); }, Qt::QueuedConnection);
            }
        };
        end.totals = auditTables(
            "DB", [&](const Finding& finding) { collector.add(finding); }, post);
        news.done = news.total = end.totals.municipalityRows + end.totals.streetRows;
        end.report = report;
    } catch (const Cancelled&) {
        end.wasCancelled = true;
    } catch (const std::exception& failure) {
        end.error = QString::fromUtf8(failure.what());
    }
    QMetaObject::invokeMethod(
        this, [this, news = std::move(news), end = std::move(end)] { Q_EMIT finished(news, end); },
        Qt::QueuedConnection);
}

} // namespace host
