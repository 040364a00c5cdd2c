// Writes whole lines to a file or to standard output.
#include "tools/line_output.h"

#include <cerrno>
#include <filesystem>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "dbase/system/system_reason.h"
#include "loading/csv.h"
#include "loading/failure.h"

namespace ambcp {

LineOutput::~LineOutput() {
    if (descriptor_ > STDOUT_FILENO) {
        ::close(descriptor_);
    }
}

void LineOutput::open() {
    descriptor_ =
        file_.empty() ? STDOUT_FILENO : ::open(file_.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (descriptor_ < 0) {
        throw loading::Failure(file_ + ": no se puede crear: " + dbase::systemReason(errno));
    }
}

void LineOutput::write(std::string_view lines) {
    const off_t begin = ::lseek(descriptor_, 0, SEEK_CUR); // negative for a pipe, which cannot be cut
    while (!lines.empty()) {
        const ssize_t put = ::write(descriptor_, lines.data(), lines.size());
        if (put >= 0) {
            lines.remove_prefix(static_cast<std::size_t>(put));
        } else if (errno != EINTR) {
            const int problem = errno;
            if (begin >= 0) {
                static_cast<void>(::ftruncate(descriptor_, begin) == 0); // the error follows in any case
            }
            fail(problem);
        }
    }
}

void LineOutput::close() {
    if (descriptor_ > STDOUT_FILENO && ::close(std::exchange(descriptor_, -1)) != 0) {
        fail(errno);
    }
}

void LineOutput::fail(int problem) {
    if (file_.empty() && problem == EPIPE) {
        throw loading::OutputClosed();
    }
    throw loading::Failure(
        (file_.empty() ? "no se puede escribir la salida: " : file_ + ": no se puede escribir: ") +
        dbase::systemReason(problem));
}

bool areSameFile(const std::string& input, const std::string& output) {
    struct stat in {};
    struct stat out {};
    const bool hasIn = input == "-" ? fstat(STDIN_FILENO, &in) == 0 : stat(input.c_str(), &in) == 0;
    const bool hasOut = output.empty() ? fstat(STDOUT_FILENO, &out) == 0 : stat(output.c_str(), &out) == 0;
    if (hasIn && hasOut) {
        return S_ISREG(in.st_mode) && in.st_dev == out.st_dev && in.st_ino == out.st_ino;
    }
    const auto place = [](const std::string& file) { // one that is not there yet has a place, too
        return std::filesystem::weakly_canonical(std::filesystem::absolute(file));
    };
    return input != "-" && !output.empty() && place(input) == place(output);
}

} // namespace ambcp
