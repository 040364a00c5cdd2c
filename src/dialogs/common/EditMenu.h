// The context menu of an edit box, in Spanish.
#pragma once

#include <QObject>

#include "AmbrelExport.h"

class QLineEdit;

namespace ambrel {

/// Gives an edit box its usual menu with Spanish texts, even in a program that does not load the toolkit's
/// translations. Belongs to its box, which may be the edit of a combo.
class AMBREL_EXPORT EditMenu : public QObject {
    Q_OBJECT
public:
    /// Owned by the box.
    explicit EditMenu(QLineEdit* box);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QLineEdit* box_;
};

} // namespace ambrel
