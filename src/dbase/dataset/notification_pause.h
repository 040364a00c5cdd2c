// Suspends a dataset's notifications for a block.
#pragma once

#include "AmbrelExport.h"

namespace dbase {

class Dataset;

/// Suspends a dataset's notifications for a block. Exceptions from listeners called at its end are lost;
/// where that matters, resume explicitly.
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
