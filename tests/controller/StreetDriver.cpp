// A process that adds and deletes streets.
#include "controller/StreetDriver.h"

#include <array>
#include <chrono>
#include <csignal>
#include <functional>
#include <stdexcept>
#include <thread>

#include <sys/wait.h>
#include <unistd.h>

#include "controller/ClasCodPostales.h"
#include "data/CodPostalesDM.h"
#include "dbase/lock/locks.h"
#include "services/MessageBox.h"

namespace postal_tests {
namespace {

using ambrel::MessageAnswer;
using ambrel::MessageBox;

/// The child's side. Prints "+ NAME" and "- NAME" before a row is stored or deleted, "= KEY" once it is
/// stored, "x" once it is deleted, "! N" at the end with the number of refusals.
class Work {
public:
    Work(const DriverWork& work, int out) : work_(work), out_(out) {}

    void run() {
        dbase::setLockPatience(std::chrono::minutes(2)); // eight programs, and perhaps one processor
        ambrel::setMessageShower([this](const MessageBox& box) { return answer(box); });
        if (!controller_.BuscaPorNombreMunicipi(QStringLiteral("MADRID"), true)) {
            throw std::runtime_error("no municipality");
        }
        for (int i = 0; i < work_.streets; ++i) {
            add(i);
            if (work_.deletes && i % 3 == 2) {
                remove(i - i % 2);
            }
        }
        tell("! " + std::to_string(refusals_));
    }

private:
    [[nodiscard]] std::string name(int i) const {
        return "CALLE " + std::to_string(work_.driver) + " " + std::to_string(i);
    }

    void tell(const std::string& line) const {
        const std::string bytes = line + '\n';
        if (write(out_, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size())) {
            throw std::runtime_error("nobody listens");
        }
    }

    MessageAnswer answer(const MessageBox& box) {
        if (box.text != QStringLiteral("Repita nuevamente la última operación")) {
            throw std::runtime_error(box.text.toStdString());
        }
        return MessageAnswer::Accept;
    }

    /// Repeats a refused operation, as a user does who is asked to.
    void repeat(const std::function<bool()>& operation) {
        auto pause = std::chrono::microseconds(20);
        for (const auto end = std::chrono::steady_clock::now() + std::chrono::minutes(2); !operation();) {
            if (std::chrono::steady_clock::now() > end) {
                throw std::runtime_error("refused for too long: " +
                                         controller_.streetFailure().toStdString());
            }
            ++refusals_;
            std::this_thread::sleep_for(pause);
            pause = std::min(pause * 2, std::chrono::microseconds(2000));
        }
    }

    void add(int i) {
        tell("+ " + name(i));
        if (!controller_.AnadirVia()) {
            throw std::runtime_error(controller_.streetFailure().toStdString());
        }
        TDMCodPostales& tables = *controller_.DM;
        tables.tbPostalCAPITAL.setText("0");
        tables.tbPostalTIPO_VIA.setText("CL");
        tables.tbPostalVIA.setText(name(i));
        tables.tbPostalCODPOSTAL.setText("28001");
        repeat([&] { return controller_.AceptarVia(); });
        tell("= " + tables.tbPostalCODIGO1.text());
    }

    void remove(int i) {
        tell("- " + name(i));
        repeat([&] {
            if (!controller_.BuscaPorViaPostal(QString::fromStdString(name(i)), QStringLiteral("CL"), true)) {
                throw std::runtime_error("not there: " + name(i));
            }
            return controller_.BorrarVia(false);
        });
        tell("x");
    }

    DriverWork work_;
    int out_;
    int refusals_ = 0;
    TClassCodPostales controller_;
};

} // namespace

StreetDriver::StreetDriver(const DriverWork& work) {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) {
        throw std::runtime_error("no pipe");
    }
    pid_ = fork();
    if (pid_ == 0) {
        close(ends[0]);
        int code = 0;
        try {
            Work(work, ends[1]).run();
        } catch (const std::exception& error) {
            const std::string text = std::string(error.what()) + '\n';
            code = write(STDERR_FILENO, text.data(), text.size()) < 0 ? 2 : 1;
        }
        _exit(code);
    }
    close(ends[1]);
    fromChild_ = ends[0];
}

StreetDriver::~StreetDriver() {
    if (pid_ > 0) {
        kill();
        join();
    }
}

bool StreetDriver::readLine() {
    std::size_t end = 0;
    while ((end = unread_.find('\n')) == std::string::npos) {
        std::array<char, 4096> bytes{};
        const ssize_t got = read(fromChild_, bytes.data(), bytes.size());
        if (got <= 0) {
            return false;
        }
        unread_.append(bytes.data(), static_cast<std::size_t>(got));
    }
    const std::string line = unread_.substr(0, end);
    unread_.erase(0, end + 1);
    const std::string rest = line.size() > 2 ? line.substr(2) : std::string();
    switch (line.front()) {
    case '+':
    case '-':
        inFlight_ = rest;
        return true;
    case '=':
        acknowledged_[inFlight_] = rest;
        ++stored_;
        break;
    case 'x':
        acknowledged_.erase(inFlight_);
        break;
    default:
        refusals_ = std::stoi(rest);
    }
    inFlight_.clear();
    return true;
}

bool StreetDriver::awaitStored(std::size_t rows) {
    while (stored_ < rows) {
        if (!readLine()) {
            return false;
        }
    }
    return true;
}

void StreetDriver::kill() const { ::kill(pid_, SIGKILL); }

int StreetDriver::join() {
    while (readLine()) {
    }
    int status = 0;
    waitpid(pid_, &status, 0);
    close(fromChild_);
    pid_ = 0;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

} // namespace postal_tests
