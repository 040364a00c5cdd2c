// Tries file locks in a folder.
#include "tools/lock_trial.h"

#include <array>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <thread>

#include <sys/wait.h>
#include <unistd.h>

#include "dbase/lock/locks.h"
#include "loading/failure.h"

namespace ambcp {

namespace {

using dbase::LockKind;
using dbase::LockRange;
using dbase::OpenMode;

enum ChildAnswer : int { yes = 0, no = 1, broken = 2 };

constexpr LockRange one = dbase::recordLock(1), another = dbase::recordLock(2);

/// How long the locks of a killed process may outlive it.
constexpr std::chrono::seconds patience{5};
constexpr std::chrono::milliseconds pause{20};

/// A file in a folder, removed at the end.
class TrialFile {
public:
    TrialFile(const std::string& folder, const FileOpener& open)
        : path_((std::filesystem::path(folder) / ("ambcp-candados-" + std::to_string(getpid()) + ".tmp"))
                    .string()),
          file_(open(path_, OpenMode::Create)) {}
    ~TrialFile() {
        file_.reset();
        std::error_code ignored; // a file left there does no harm
        std::filesystem::remove(path_, ignored);
    }
    TrialFile(const TrialFile&) = delete;
    TrialFile& operator=(const TrialFile&) = delete;

    [[nodiscard]] const std::string& path() const { return path_; }
    [[nodiscard]] dbase::File& operator*() const { return *file_; }
    dbase::File* operator->() const { return file_.get(); }

private:
    std::string path_;
    std::unique_ptr<dbase::File> file_;
};

/// Runs an action in a child of this process, whose exit code is the answer.
template<typename Action>
pid_t startChild(Action action) {
    const pid_t child = fork();
    if (child < 0) {
        throw loading::Failure("no se puede iniciar un segundo proceso para la prueba");
    }
    if (child == 0) {
        int answer = ChildAnswer::broken;
        try {
            answer = action() ? ChildAnswer::yes : ChildAnswer::no;
        } catch (const std::exception&) {
            // the answer stays `broken`
        }
        _exit(answer);
    }
    return child;
}

int answerOf(pid_t child) {
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : static_cast<int>(ChildAnswer::broken);
}

class LockTrial {
public:
    LockTrial(const std::string& folder, const FileOpener& open) : open_(open), file_(folder, open) {}

    std::vector<LockProbe> run() {
        tryExclusion();
        trySharing();
        tryOneProcess();
        tryDeath();
        tryVisibility();
        return std::move(probes_);
    }

private:
    void add(const char* question, bool works) { probes_.push_back({question, works}); }

    [[nodiscard]] int childLocks(LockRange range, LockKind kind) const {
        return answerOf(
            startChild([&] { return open_(file_.path(), OpenMode::ReadWrite)->tryLock(range, kind); }));
    }

    void tryExclusion() {
        const bool held = file_->tryLock(one, LockKind::Exclusive);
        add("un proceso puede bloquear", held);
        add("otro proceso no puede bloquear lo mismo",
            childLocks(one, LockKind::Exclusive) == ChildAnswer::no);
        add("otro proceso no puede leer lo bloqueado", childLocks(one, LockKind::Shared) == ChildAnswer::no);
        add("otro proceso puede bloquear otro registro",
            childLocks(another, LockKind::Exclusive) == ChildAnswer::yes);
        file_->unlock(one);
        add("lo que se suelta queda libre", childLocks(one, LockKind::Exclusive) == ChildAnswer::yes);
    }

    void trySharing() {
        const bool held = file_->tryLock(dbase::structureLock, LockKind::Shared);
        add("dos procesos pueden leer a la vez",
            held && childLocks(dbase::structureLock, LockKind::Shared) == ChildAnswer::yes);
        add("nadie puede escribir mientras otro lee",
            childLocks(dbase::structureLock, LockKind::Exclusive) == ChildAnswer::no);
        file_->unlock(dbase::structureLock);
    }

    void tryOneProcess() {
        const bool held = file_->tryLock(one, LockKind::Exclusive);
        const auto second = open_(file_.path(), OpenMode::ReadWrite);
        add("dos cursores de un mismo proceso se respetan",
            held && !second->tryLock(one, LockKind::Exclusive));
        file_->unlock(one);
    }

    void tryDeath() {
        std::array<int, 2> ends{};
        if (pipe(ends.data()) != 0) {
            throw loading::Failure("no se puede hablar con un segundo proceso para la prueba");
        }
        const pid_t child = startChild([&] {
            const auto file = open_(file_.path(), OpenMode::ReadWrite);
            const char held = file->tryLock(one, LockKind::Exclusive) ? 1 : 0;
            const bool told = write(ends[1], &held, 1) == 1;
            while (told) {
                ::pause();
            }
            return false;
        });
        close(ends[1]);
        char held = 0;
        const bool isHeld = read(ends[0], &held, 1) == 1 && held == 1;
        close(ends[0]);
        kill(child, SIGKILL);
        static_cast<void>(answerOf(child));
        add("el bloqueo de un programa que muere queda libre", isHeld && isFreeInTime());
    }

    [[nodiscard]] bool isFreeInTime() {
        const auto end = std::chrono::steady_clock::now() + patience;
        while (!file_->tryLock(one, LockKind::Exclusive)) {
            if (std::chrono::steady_clock::now() > end) {
                return false;
            }
            std::this_thread::sleep_for(pause);
        }
        file_->unlock(one);
        return true;
    }

    void tryVisibility() {
        constexpr std::array<char, 4> written{'v', 'i', 's', 't'};
        file_->write(0, written);
        const int answer = answerOf(startChild([&] {
            std::array<char, written.size()> found{};
            open_(file_.path(), OpenMode::ReadOnly)->read(0, found);
            return found == written;
        }));
        add("lo que escribe un proceso lo lee otro enseguida", answer == ChildAnswer::yes);
    }

    const FileOpener& open_;
    TrialFile file_;
    std::vector<LockProbe> probes_;
};

} // namespace

std::vector<LockProbe> tryLocks(const std::string& folder, const FileOpener& open) {
    return LockTrial(folder, open).run();
}

} // namespace ambcp
