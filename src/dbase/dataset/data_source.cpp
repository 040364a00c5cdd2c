// Links a data source to the dataset that it listens to.
#include "dbase/dataset/data_source.h"

namespace dbase {

void DataSource::setDataset(Dataset* dataset) {
    dataset_ = dataset;
    upstream_.reset();
    upstreamLife_.reset();
    if (dataset_ != nullptr) {
        upstreamLife_ = dataset_->lifetime();
        upstream_ = dataset_->listen([this](DatasetChange change) { listeners_.tell(change); });
    }
    listeners_.tell(dataset_ != nullptr && dataset_->isOpen() ? DatasetChange::Opened
                                                              : DatasetChange::Closed);
}

} // namespace dbase
