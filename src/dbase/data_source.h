// The link between bound widgets and a dataset: widgets listen here, so that a form can change the dataset behind.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "dbase/dataset.h"

namespace dbase {

/// Passes on what its dataset tells, synchronously.
class DataSource {
public:
    explicit DataSource(Dataset* dataset = nullptr) { setDataset(dataset); }

    [[nodiscard]] Dataset* dataset() const { return dataset_; }
    /// The dataset must outlive the source or be taken away with nullptr.
    void setDataset(Dataset* dataset);

    [[nodiscard]] Dataset::Subscription listen(Dataset::Listener listener);

private:
    void tell(DatasetChange change);

    Dataset* dataset_ = nullptr;
    Dataset::Subscription upstream_;
    std::vector<std::weak_ptr<Dataset::Listener>> listeners_;
};

} // namespace dbase
