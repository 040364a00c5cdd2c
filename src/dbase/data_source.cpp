#include "dbase/data_source.h"

#include <algorithm>

namespace dbase {

void DataSource::setDataset(Dataset* dataset) {
    dataset_ = dataset;
    upstream_.reset();
    if (dataset_ != nullptr) {
        upstream_ = dataset_->listen([this](DatasetChange change) { tell(change); });
    }
    tell(dataset_ != nullptr && dataset_->isOpen() ? DatasetChange::Opened : DatasetChange::Closed);
}

Dataset::Subscription DataSource::listen(Dataset::Listener listener) {
    auto subscription = std::make_shared<Dataset::Listener>(std::move(listener));
    listeners_.push_back(subscription);
    return subscription;
}

void DataSource::tell(DatasetChange change) {
    std::erase_if(listeners_, [](const auto& listener) { return listener.expired(); });
    const auto current = listeners_;
    for (const auto& weak : current) {
        if (const auto listener = weak.lock()) {
            (*listener)(change);
        }
    }
}

} // namespace dbase
