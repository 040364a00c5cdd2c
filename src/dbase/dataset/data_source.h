// The link between bound widgets and a dataset: widgets listen here, so that a form can change the dataset
// behind.
#pragma once

#include "AmbrelExport.h"
#include "dbase/dataset/dataset.h"

namespace dbase {

/// Passes on what its dataset tells, synchronously.
class AMBREL_EXPORT DataSource {
public:
    /// The dataset may go first.
    explicit DataSource(Dataset* dataset = nullptr) { setDataset(dataset); }
    DataSource(const DataSource&) = delete;
    DataSource& operator=(const DataSource&) = delete;

    /// Null when there is none, and when it was destroyed.
    [[nodiscard]] Dataset* dataset() const { return upstreamLife_.expired() ? nullptr : dataset_; }
    void setDataset(Dataset* dataset);

    /// Ends when the subscription goes.
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
