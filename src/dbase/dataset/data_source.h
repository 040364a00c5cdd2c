// The link between bound widgets and a dataset: widgets listen to it, so that a form can exchange the
// dataset.
#pragma once

#include "AmbrelExport.h"
#include "dbase/dataset/dataset.h"

namespace dbase {

/// Passes on its dataset's notifications, synchronously.
class AMBREL_EXPORT DataSource {
public:
    /// The dataset may be destroyed first.
    explicit DataSource(Dataset* dataset = nullptr) { setDataset(dataset); }
    DataSource(const DataSource&) = delete;
    DataSource& operator=(const DataSource&) = delete;

    /// Null if there is none or it was destroyed.
    [[nodiscard]] Dataset* dataset() const { return upstreamLife_.expired() ? nullptr : dataset_; }
    void setDataset(Dataset* dataset);

    /// Listens until the subscription is destroyed.
    [[nodiscard]] Dataset::Subscription listen(Dataset::Listener listener) {
        return listeners_.add(std::move(listener));
    }
    /// Expires with the source.
    [[nodiscard]] std::weak_ptr<const void> lifetime() const { return listeners_.lifetime(); }

private:
    Dataset* dataset_ = nullptr;
    std::weak_ptr<const void> upstreamLife_;
    Dataset::Subscription upstream_;
    ListenerList listeners_;
};

} // namespace dbase
