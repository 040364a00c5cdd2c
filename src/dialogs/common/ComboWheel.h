// The mouse wheel over combos.
#pragma once

#include <QObject>

class QComboBox;

namespace ambrel {

/// Lets the wheel change a combo only while it has the focus: who scrolls past it, or rests the hand on the
/// wheel, changes no data. The wheel no longer gives it the focus either. Belongs to its combo.
class ComboWheel : public QObject {
public:
    /// The combo owns it.
    explicit ComboWheel(QComboBox* combo);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QComboBox* combo_;
};

} // namespace ambrel
