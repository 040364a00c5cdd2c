// The listeners of a dataset.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "dbase/dataset/dataset_types.h"

namespace dbase {

/// Calls listeners synchronously, in the order of subscribing. One added during a call is first called at the
/// next change.
class ListenerList {
public:
    /// Receives what has changed.
    using Listener = std::function<void(DatasetChange)>;
    /// Ends the listening when destroyed.
    using Subscription = std::shared_ptr<Listener>;

    /// Adds a listener for as long as the result is kept.
    [[nodiscard]] Subscription add(Listener listener) {
        auto subscription = std::make_shared<Listener>(std::move(listener));
        listeners_.push_back(subscription);
        return subscription;
    }
    /// Expires with the list, so that holders of a pointer to its owner can check whether that still exists.
    [[nodiscard]] std::weak_ptr<const void> lifetime() const { return lifetime_; }
    void tell(DatasetChange change) {
        if (listeners_.empty()) {
            return;
        }
        std::erase_if(listeners_, [](const auto& listener) { return listener.expired(); });
        const auto current = listeners_; // a call may add or remove listeners
        for (const auto& weak : current) {
            if (const auto listener = weak.lock()) {
                (*listener)(change);
            }
        }
    }

private:
    std::vector<std::weak_ptr<Listener>> listeners_;
    std::shared_ptr<const void> lifetime_ = std::make_shared<char>();
};

} // namespace dbase
