// The faults set for the service and the requests it received.
#include "tools/callejero/Conduct.h"

#include <algorithm>
#include <utility>

namespace callejero {
namespace {

/// Interval at which a held answer checks whether its client is still there.
constexpr std::chrono::milliseconds lookInterval{50};

} // namespace

Conduct::Conduct(Log log) : log_(std::move(log)) {}

void Conduct::setFault(Operation operation, Fault fault, const std::string& name) {
    addFault({.operation = operation, .name = name, .fault = fault});
}

void Conduct::addFault(const FaultRule& rule) {
    const std::lock_guard lock(mutex_);
    faults_.push_back(rule);
}

void Conduct::clearFaults() {
    const std::lock_guard lock(mutex_);
    faults_.clear();
}

void Conduct::release() {
    {
        const std::lock_guard lock(mutex_);
        ++releases_;
    }
    changed_.notify_all();
}

void Conduct::setDelay(std::chrono::milliseconds delay) {
    const std::lock_guard lock(mutex_);
    delay_ = delay;
}

std::vector<Request> Conduct::requests() const {
    const std::lock_guard lock(mutex_);
    return requests_;
}

std::vector<std::string> Conduct::complaints() const {
    const std::lock_guard lock(mutex_);
    return complaints_;
}

Conduct::Noted Conduct::note(const Request& request) {
    const std::lock_guard lock(mutex_);
    requests_.push_back(request);
    if (log_) {
        log_(nameOf(request.operation) + " «" + request.province + "» «" + request.municipality + "»");
    }
    const auto applies = [&request](const FaultRule& rule) {
        return rule.operation.value_or(request.operation) == request.operation &&
               (rule.name.empty() || rule.name == request.province || rule.name == request.municipality);
    };
    const auto found = std::find_if(faults_.rbegin(), faults_.rend(), applies);
    return {.fault = found == faults_.rend() ? Fault::None : found->fault, .releases = releases_};
}

void Conduct::complain(const std::string& reason) {
    const std::lock_guard lock(mutex_);
    complaints_.push_back(reason);
    if (log_) {
        log_("petición incorrecta: " + reason);
    }
}

void Conduct::takeTime() {
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, delay_, [this] { return isEnding_; });
}

bool Conduct::hold(unsigned releases, const std::function<bool()>& isWanted) {
    std::unique_lock lock(mutex_);
    const auto goesOn = [this, releases] { return isEnding_ || releases_ != releases; };
    while (!changed_.wait_for(lock, lookInterval, goesOn) && isWanted()) {
        continue;
    }
    return !isEnding_;
}

void Conduct::end() {
    {
        const std::lock_guard lock(mutex_);
        isEnding_ = true;
    }
    changed_.notify_all();
}

} // namespace callejero
