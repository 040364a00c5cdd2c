// The link between bound widgets and a dataset: widgets listen here, so that a form can change the dataset
// behind.
#pragma once

#include "dbase/dataset.h"

namespace dbase {

/// Passes on what its dataset tells, synchronously.
class DataSource {
public:
    explicit DataSource(Dataset* dataset = nullptr) { setDataset(dataset); }
    DataSource(const DataSource&) = delete;
    DataSource& operator=(const DataSource&) = delete;

    [[nodiscard]] Dataset* dataset() const { return dataset_; }
    /// The dataset must outlive the source or be taken away with nullptr.
    void setDataset(Dataset* dataset);

    [[nodiscard]] Dataset::Subscription listen(Dataset::Listener listener) {
        return listeners_.add(std::move(listener));
    }

private:
    Dataset* dataset_ = nullptr;
    Dataset::Subscription upstream_;
    ListenerList listeners_;
};

} // namespace dbase
