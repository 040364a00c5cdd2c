// A block during which the listeners of a dataset are told nothing.
#pragma once

#include "AmbrelExport.h"

namespace dbase {

class Dataset;

/// Suspends a dataset's notifications for a block. What a listener throws when it is told at the end is lost;
/// where that matters, resume by hand.
class AMBREL_EXPORT NotificationPause {
public:
    /// The dataset must outlive it.
    explicit NotificationPause(Dataset& dataset);
    ~NotificationPause();
    NotificationPause(const NotificationPause&) = delete;
    NotificationPause& operator=(const NotificationPause&) = delete;

private:
    Dataset& dataset_;
};

} // namespace dbase
