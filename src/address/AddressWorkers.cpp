// Spreads the judging of addresses over threads.
#include "address/AddressWorkers.h"

#include <algorithm>
#include <optional>
#include <span>
#include <unordered_map>
#include <utility>

#include "address/ValidatedColumns.h"
#include "dbase/lock/read_scope.h"
#include "dbase/system/mapped_view.h"
#include "loading/ansi_text.h"

namespace ambrel {

namespace {

/// Few enough that threads end at about the same time.
constexpr std::size_t mostRowsOfJob = 1024;
/// Few enough that stopping does not take long, and that they read little of the tables.
constexpr std::size_t mostTogether = 32;
/// In bytes. In the end every thread would have seen all of the tables, and all their pages would count as
/// memory of this program.
constexpr std::size_t mostOfFiles = std::size_t{48} << 20;

/// More than any machine has cores for; each has tables and names of its own.
constexpr unsigned mostThreads = 256;

unsigned threadCount(unsigned wanted) {
    return std::clamp(wanted > 0 ? wanted : std::thread::hardware_concurrency(), 1U, mostThreads);
}

/// What is written after a row.
std::string addedText(const AddressRow& row, const std::string& provinceName,
                      const loading::CsvFormat& format) {
    std::string text = row.isOpen ? "\"" : "";
    const std::string special = {format.separator, '"', '\r', '\n'};
    for (const std::string& value : validatedColumns(row.judged, provinceName)) {
        text += format.separator;
        const bool isQuoted = value.find_first_of(special) != std::string::npos;
        text.append(isQuoted ? 1 : 0, '"');
        for (const char c : value) {
            text.append(c == '"' ? 2 : 1, c);
        }
        text.append(isQuoted ? 1 : 0, '"');
    }
    return format.encoding == loading::TextEncoding::Windows1252 ? text : loading::utf8FromAnsi(text);
}

} // namespace

AddressWorkers::AddressWorkers(const AddressFileOptions& options, const loading::CsvFormat& format)
    : options_(options), format_(format) {
    const unsigned count = threadCount(options.threads);
    options_.validation.memory /= count;
    try {
        for (unsigned worker = 0; worker < count; ++worker) {
            threads_.emplace_back([this, worker] { work(worker); });
        }
    } catch (const std::exception&) {
        if (threads_.empty()) { // otherwise those that could be started will do
            throw;
        }
    }
}

AddressWorkers::~AddressWorkers() {
    {
        const std::lock_guard lock(mutex_);
        isStopping_ = true;
    }
    hasJobs_.notify_all();
    for (std::thread& thread : threads_) {
        thread.join();
    }
}

void AddressWorkers::submit(AddressBlock& block) {
    std::unordered_map<std::size_t, Job> open;
    std::vector<Job> jobs;
    for (std::size_t i = 0; i < block.rows.size(); ++i) {
        if (block.rows[i].kind == AddressRow::Kind::Passed) {
            continue;
        }
        const std::size_t hint = provinceHint(block.rows[i].given);
        Job& job = open.try_emplace(hint, Job{&block, hint, {}}).first->second;
        job.rows.push_back(i);
        if (job.rows.size() == mostRowsOfJob) {
            jobs.push_back(std::move(job));
            open.erase(hint);
        }
    }
    for (auto& [hint, job] : open) {
        jobs.push_back(std::move(job));
    }
    const std::lock_guard lock(mutex_);
    jobsLeft_[&block] = jobs.size();
    std::ranges::move(jobs, std::back_inserter(jobs_));
    hasJobs_.notify_all();
}

bool AddressWorkers::waitFor(const AddressBlock& block, std::chrono::milliseconds patience) {
    std::unique_lock lock(mutex_);
    const bool isOver = hasFinished_.wait_for(
        lock, patience, [&] { return problem_ != nullptr || jobsLeft_.at(&block) == 0; });
    if (problem_ != nullptr) {
        std::rethrow_exception(problem_);
    }
    if (isOver) {
        jobsLeft_.erase(&block);
    }
    return isOver;
}

/// Waits for the next job of a thread; false when it should end.
bool AddressWorkers::take(unsigned worker, Job& job) {
    std::unique_lock lock(mutex_);
    hasJobs_.wait(lock, [&] { return isStopping_ || !jobs_.empty(); });
    if (isStopping_) {
        return false;
    }
    auto chosen = std::ranges::find_if(jobs_, [&](const Job& one) {
        const auto keeper = keeper_.find(one.hint);
        return keeper != keeper_.end() && keeper->second == worker;
    });
    if (chosen == jobs_.end()) {
        chosen = std::ranges::find_if(jobs_, [&](const Job& one) { return !keeper_.contains(one.hint); });
    }
    if (chosen == jobs_.end()) {
        chosen = jobs_.begin();
    }
    keeper_[chosen->hint] = worker;
    job = std::move(*chosen);
    jobs_.erase(chosen);
    return true;
}

void AddressWorkers::work(unsigned worker) {
    try {
        std::optional<AddressValidator> validator; // opens tables, which a short file does not need so often
        for (Job job; take(worker, job);) {
            if (!validator) {
                validator.emplace(options_.database, options_.validation);
            }
            judge(job, *validator);
            finish(*job.block);
        }
    } catch (...) { // goes on in the thread that waits
        const std::lock_guard lock(mutex_);
        problem_ = problem_ != nullptr ? problem_ : std::current_exception();
        isStopping_ = true;
        hasJobs_.notify_all();
        hasFinished_.notify_all();
    }
}

void AddressWorkers::judge(const Job& job, AddressValidator& validator) {
    const dbase::ReadScope scope;
    for (std::span<const std::size_t> left = job.rows; !left.empty() && !isStopping_;) {
        const auto together = left.first(std::min(left.size(), mostTogether));
        left = left.subspan(together.size());
        judge(*job.block, together, validator);
        dbase::boundViewedPages(mostOfFiles);
    }
}

void AddressWorkers::judge(AddressBlock& block, std::span<const std::size_t> rows,
                           AddressValidator& validator) {
    std::vector<AddressToJudge> readable;
    for (const std::size_t i : rows) {
        AddressRow& row = block.rows[i];
        if (row.kind == AddressRow::Kind::Broken) {
            row.judged.verdict = Verdict::BrokenRow;
        } else {
            readable.push_back({&row.given, &row.judged});
        }
    }
    validator.validate(readable);
    for (const std::size_t i : rows) {
        AddressRow& row = block.rows[i];
        row.added = addedText(row, validator.provinceName(row.judged.province), format_);
        ++rows_;
        bytes_ += row.bytes;
    }
}

void AddressWorkers::finish(const AddressBlock& block) {
    const std::lock_guard lock(mutex_);
    if (--jobsLeft_.at(&block) == 0) {
        hasFinished_.notify_all();
    }
}

} // namespace ambrel
