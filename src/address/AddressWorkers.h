// Threads that judge blocks of addresses.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <exception>
#include <map>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <thread>
#include <vector>

#include "address/AddressRows.h"
#include "address/AddressValidator.h"

namespace ambrel {

/// Judges blocks, each thread with a validator of its own. The rows of a province go to the thread that has
/// judged the last ones of it, because that one keeps its names; a thread without work takes any.
class AddressWorkers {
public:
    AddressWorkers(const AddressFileOptions& options, const loading::CsvFormat& format);
    /// Drops what has not been judged.
    ~AddressWorkers();
    AddressWorkers(const AddressWorkers&) = delete;
    AddressWorkers& operator=(const AddressWorkers&) = delete;

    /// Judges all rows of a block, which has to stay where it is until then.
    void submit(AddressBlock& block);
    /// Waits a while for a block; false if it is not judged yet. Errors: what judging has thrown.
    [[nodiscard]] bool waitFor(const AddressBlock& block, std::chrono::milliseconds patience);

    /// What has been judged so far.
    [[nodiscard]] std::uint64_t rows() const { return rows_; }
    [[nodiscard]] std::uint64_t bytes() const { return bytes_; }

private:
    /// Rows of one block that are best judged by one thread.
    struct Job {
        AddressBlock* block;
        std::size_t hint; // the same for addresses of one province
        std::vector<std::size_t> rows;
    };

    void work(unsigned worker);
    [[nodiscard]] bool take(unsigned worker, Job& job);
    void judge(const Job& job, AddressValidator& validator);
    void judge(AddressBlock& block, std::span<const std::size_t> rows, AddressValidator& validator);
    void finish(const AddressBlock& block);

    AddressFileOptions options_;
    loading::CsvFormat format_;
    std::atomic<std::uint64_t> rows_ = 0, bytes_ = 0;
    std::atomic<bool> isStopping_ = false;

    std::mutex mutex_; // guards all that follows
    std::condition_variable hasJobs_, hasFinished_;
    std::deque<Job> jobs_;
    std::map<const AddressBlock*, std::size_t> jobsLeft_;
    std::map<std::size_t, unsigned> keeper_; // the thread that judged the last rows of a hint
    std::exception_ptr problem_;

    std::vector<std::thread> threads_; // last: started when everything else is there
};

} // namespace ambrel
