// Binds the boxes of a form to the row of the host's table.
#pragma once

#include <QObject>
#include <vector>

#include "AmbrelExport.h"
#include "dbase/dataset/dataset.h"

class QLineEdit;

namespace ambrel {

/// Every change of a box's text reaches the pending row at once, and anything else written to the row appears
/// in its box at once. Changing a box puts the row into edit automatically.
class AMBREL_EXPORT RecordBinding : public QObject {
    Q_OBJECT
public:
    /// Binds nothing yet. The table must outlive it.
    explicit RecordBinding(dbase::Dataset& table, QObject* parent = nullptr);

    /// Binds the box to one field from now on.
    void bind(QLineEdit* box, dbase::Field& field);

    /// Shows the current row in the boxes, discarding what they held.
    void showRow();
    /// Puts the row into edit; an empty table gets a new row. If that is refused, returns false, with the
    /// error shown to the user and the stored row back in the boxes.
    [[nodiscard]] bool beginEdit();
    /// Whether the pending row has changed since it went into edit or was begun.
    [[nodiscard]] bool hasChanges() const;
    /// The first box whose text is longer than its column, which would keep only the beginning; null if there
    /// is none. Check before posting.
    [[nodiscard]] QLineEdit* cutBox() const;
    /// The first box with a character that no table can hold, which would become "?"; null if there is none.
    /// Check before posting: typing such a character is refused, pasting it is not.
    [[nodiscard]] QLineEdit* unstorableBox() const;
    /// Releases a row that is in edit but unchanged, so that other users can have it.
    void endUnchangedEdit();
    /// Starts a new, blank row.
    void beginNew();

Q_SIGNALS:
    /// The row went into edit, was changed or was released.
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
    bool showing_ = false; // texts are being copied from the row to the boxes
    bool writing_ = false; // a text is being copied from a box to the row
};

} // namespace ambrel
