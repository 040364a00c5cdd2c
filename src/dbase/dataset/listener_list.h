// Those who want to be told what a dataset does.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "dbase/dataset/dataset_types.h"

namespace dbase {

/// Tells synchronously, in the order of subscribing. Who comes while it tells is told the next time.
class ListenerList {
public:
    /// Gets what has changed.
    using Listener = std::function<void(DatasetChange)>;
    /// Ends the listening when it goes.
    using Subscription = std::shared_ptr<Listener>;

    /// Adds a listener for as long as the result is kept.
    [[nodiscard]] Subscription add(Listener listener) {
        auto subscription = std::make_shared<Listener>(std::move(listener));
        listeners_.push_back(subscription);
        return subscription;
    }
    /// Expires with the list: who keeps a pointer to what owns it asks here whether that still exists.
    [[nodiscard]] std::weak_ptr<const void> lifetime() const { return lifetime_; }
    void tell(DatasetChange change) {
        if (listeners_.empty()) {
            return;
        }
        std::erase_if(listeners_, [](const auto& listener) { return listener.expired(); });
        const auto current = listeners_; // a listener may come or go while it is told
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
