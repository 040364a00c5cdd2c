// The one dialog from which any routine of the package is tried.
#pragma once

#include <QDialog>
#include <vector>

#include "host/routines/Routine.h"

class QFormLayout;
class QLineEdit;

namespace host::routines {

/// Shows a routine's arguments to be filled in, calls it, and shows the result. Stays open for the next
/// try.
class RoutineDialog : public QDialog {
    Q_OBJECT
public:
    /// The record must outlive the dialog.
    RoutineDialog(Routine routine, dbase::Dataset& record, QWidget* parent);

private:
    struct Editor {
        QString object;
        std::function<QVariant()> value;
    };

    void layOut();
    QWidget* heading();
    QWidget* argumentBox();
    QWidget* resultBox();
    QWidget* commands();
    void addEditor(QFormLayout& form, const Argument& argument);
    [[nodiscard]] QWidget* makeEditor(const Argument& argument);
    void run();

    Routine routine_;
    dbase::Dataset& record_;
    std::vector<Editor> editors_;
    std::vector<QLineEdit*> results_;
};

} // namespace host::routines
