// The mouse wheel over combos.
#pragma once

#include <QObject>

class QComboBox;

namespace ambrel {

/// Lets the wheel change a combo only while it has the focus, so that scrolling past it or resting a hand on
/// the wheel changes no data. Nor does the wheel give it the focus. Belongs to its combo.
class ComboWheel : public QObject {
public:
    /// Owned by the combo.
    explicit ComboWheel(QComboBox* combo);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QComboBox* combo_;
};

} // namespace ambrel
