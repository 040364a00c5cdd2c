// The administrator's command as a child, whose memory is counted by itself.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace bench {

/// Runs ambcp; returns its peak memory in MiB.
inline double runAmbcp(const std::vector<std::string>& arguments) {
    const pid_t child = fork();
    if (child == 0) {
        std::vector<char*> words;
        words.push_back(const_cast<char*>(AMBCP_PATH));
        for (const std::string& argument : arguments) {
            words.push_back(const_cast<char*>(argument.c_str()));
        }
        words.push_back(nullptr);
        execv(AMBCP_PATH, words.data());
        _exit(127);
    }
    int status = 0;
    rusage usage{};
    if (wait4(child, &status, 0, &usage) != child || status != 0) {
        throw std::runtime_error("ambcp " + arguments.front());
    }
    return static_cast<double>(usage.ru_maxrss) / 1024;
}

} // namespace bench
