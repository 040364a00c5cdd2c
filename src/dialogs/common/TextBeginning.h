// Makes an edit box that is too narrow for its text show the beginning rather than the end.
#pragma once

#include <QObject>

class QLineEdit;

namespace ambrel {

/// Keeps the caret of an edit box, whose lifetime it shares, before the first letter while the box is not in
/// use: when a text is put into it, and when it is left. A disabled box shows its beginning too.
class TextBeginning : public QObject {
    Q_OBJECT
public:
    explicit TextBeginning(QLineEdit* box);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QObject& box_;
};

/// Selects the whole text, with the caret before it, so that its beginning is visible.
void selectFromBeginning(QLineEdit& box);

} // namespace ambrel
