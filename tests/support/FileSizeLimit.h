// A disk that is full for any write that would make a file too large.
#pragma once

#include <stdexcept>

#include <sys/resource.h>

namespace ambrel::test {

/// While it exists, no file of this process grows beyond a size; larger writes fail as on a full disk. A
/// write that does not see to the system's signal ends the program.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t bytes) {
        getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limit{bytes, before_.rlim_max};
        if (setrlimit(RLIMIT_FSIZE, &limit) != 0) {
            throw std::runtime_error("the size of files cannot be limited");
        }
    }
    ~FileSizeLimit() { setrlimit(RLIMIT_FSIZE, &before_); }
    FileSizeLimit(const FileSizeLimit&) = delete;
    FileSizeLimit& operator=(const FileSizeLimit&) = delete;

private:
    rlimit before_ = {};
};

} // namespace ambrel::test
