// The link between the boxes of a form and the row of the host's table.
#pragma once

#include <QObject>
#include <vector>

#include "AmbrelExport.h"
#include "dbase/dataset/dataset.h"

class QLineEdit;

namespace ambrel {

/// Every change of a box's text reaches the pending row at once, and what else is written into the row
/// appears in its box at once. The row goes into edit by itself when a box changes.
class AMBREL_EXPORT RecordBinding : public QObject {
    Q_OBJECT
public:
    /// Binds nothing yet. The table must outlive it.
    explicit RecordBinding(dbase::Dataset& table, QObject* parent = nullptr);

    /// The box belongs to one field from now on.
    void bind(QLineEdit* box, dbase::Field& field);

    /// Shows the current row in the boxes, whatever they held.
    void showRow();
    /// Puts the row into edit; an empty table gets a new row. False, the error shown to the user and the
    /// boxes back at the stored row, when that is refused.
    [[nodiscard]] bool beginEdit();
    /// Whether the pending row differs from what it was when it went into edit or was begun.
    [[nodiscard]] bool hasChanges() const;
    /// The first box with a text that is longer than its column, which keeps only the beginning; null when
    /// there is none. Ask before posting.
    [[nodiscard]] QLineEdit* cutBox() const;
    /// Lets go of a row that is in edit without having been changed, so that others can have it.
    void endUnchangedEdit();
    /// Starts a new, blank row.
    void beginNew();

Q_SIGNALS:
    /// The row went into edit, was changed or let go of.
    void changed();
    /// The boxes show another row, or the stored texts again.
    void rowShown();

private:
    struct Bond {
        QLineEdit* box;
        dbase::Field* field;
        std::string before; // value of the field when the row went into edit
    };

    void write(const Bond& bond);
    void follow(dbase::DatasetChange change);
    void rememberValues();

    dbase::Dataset& table_;
    std::vector<Bond> bonds_;
    dbase::Dataset::Subscription subscription_;
    bool showing_ = false; // texts are going from the row to the boxes
    bool writing_ = false; // a text is going from a box to the row
};

} // namespace ambrel
