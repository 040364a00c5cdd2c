// Notes the signals that end a program.
#include "tools/interruption.h"

#include <array>
#include <csignal>
#include <string>

#include <poll.h>
#include <unistd.h>

namespace ambcp {

namespace {

constexpr std::array<int, 3> signals{SIGINT, SIGTERM, SIGHUP};
volatile std::sig_atomic_t requested = 0;

extern "C" void note(int signal) { requested = signal; }

} // namespace

Interruption::Interruption() {
    for (const int signal : signals) {
        struct sigaction action {};
        action.sa_handler = note;
        action.sa_flags = static_cast<int>(SA_RESETHAND);
        struct sigaction before {};
        sigaction(signal, nullptr, &before);
        if (before.sa_handler != SIG_IGN) { // as under nohup
            sigaction(signal, &action, nullptr);
        }
    }
}

Interruption::~Interruption() {
    for (const int signal : signals) {
        struct sigaction now {};
        sigaction(signal, nullptr, &now);
        if (now.sa_handler == note) {
            std::signal(signal, SIG_DFL);
        }
    }
}

bool Interruption::isRequested() { return requested != 0; }

void Interruption::obey() {
    if (requested != 0) {
        std::signal(requested, SIG_DFL);
        std::raise(requested);
    }
}

loading::TextSource interruptibleInput(const std::string& name) {
    return [input = loading::standardInput(name)](std::span<char> room) {
        constexpr int patience = 100; // ms
        pollfd waiting{STDIN_FILENO, POLLIN, 0};
        while (poll(&waiting, 1, patience) <= 0) {
            if (Interruption::isRequested()) {
                throw Interrupted();
            }
        }
        return input(room);
    };
}

} // namespace ambcp
