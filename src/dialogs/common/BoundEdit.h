// An edit box bound to a field of a dataset.
#pragma once

#include <QLineEdit>
#include <memory>
#include <string>

#include "dbase/dataset/data_source.h"

namespace ambrel {

/// Shows the field's value in the current record and follows it. Every change of the text, typed or not,
/// reaches the pending record at once; while no record is pending, the box is read-only. A text that the
/// field cannot hold, such as a word in a number, stays in the box, and the field keeps its value.
class BoundEdit : public QLineEdit {
    Q_OBJECT
public:
    explicit BoundEdit(QWidget* parent = nullptr);

    /// Shows nothing for a source without a dataset, or a dataset without the field. The source may be
    /// destroyed before the box, which is then empty from the next change on.
    void bind(dbase::DataSource& source, std::string field);
    void unbind();

    /// True if the field does not have the text as it stands here, because it cannot hold it: something that
    /// is not a number, a text too long, a character that no table has.
    [[nodiscard]] bool isRefused() const { return refused_; }

private:
    [[nodiscard]] dbase::Field* field() const;
    void follow(dbase::DatasetChange change);
    void show(const dbase::Field* field);
    void write();

    dbase::DataSource* source_ = nullptr;
    std::weak_ptr<const void> sourceLife_;
    dbase::Dataset::Subscription subscription_;
    std::string fieldName_;
    std::string shownValue_; // of the field, when box and field last agreed
    bool passing_ = false;   // a text is being passed between box and field
    bool refused_ = false;
};

} // namespace ambrel
