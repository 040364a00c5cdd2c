// An edit box that is too narrow for its text shows the beginning of it, not the end.
#pragma once

#include <QObject>

class QLineEdit;

namespace ambrel {

/// Keeps the caret of an edit box, which it lives with, before the first letter while the box is not used:
/// when a text is put into it, and when it is left. A disabled box shows its beginning, too.
class TextBeginning : public QObject {
    Q_OBJECT
public:
    explicit TextBeginning(QLineEdit* box);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QObject& box_;
};

/// Selects the whole text; the caret stands before it, so that its beginning is seen.
void selectFromBeginning(QLineEdit& box);

} // namespace ambrel
