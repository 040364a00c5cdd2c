// What a box does with typed characters.
#pragma once

#include <QObject>

#include "AmbrelExport.h"

class QInputMethodEvent;
class QKeyEvent;
class QLineEdit;

namespace ambrel {

/// Whether letters become capitals.
enum class Capitals { No, Yes };

/// Turns typed letters into capitals and stops typing at a maximum length. Belongs to its box, which may be
/// the edit of a combo. Text set by the program, or chosen from a drop-down list, is kept whole and
/// unchanged; therefore the box's own maximum length, which would cut such text too, is not used.
class AMBREL_EXPORT TypingRules : public QObject {
    Q_OBJECT
public:
    /// As a maximum length: unlimited.
    static constexpr int anyLength = -1;

    /// Owned by the box.
    TypingRules(QLineEdit* box, int maximalLength, Capitals capitals);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    [[nodiscard]] bool hasRoomFor(const QString& typed) const;
    [[nodiscard]] QString withCapitals(const QString& typed) const;
    bool filterKey(const QKeyEvent& event);
    bool filterInput(const QInputMethodEvent& event);

    QLineEdit* box_;
    QObject* typedInto_; // receives the keys: a combo passes them to its edit
    int maximalLength_;
    Capitals capitals_;
    bool passing_ = false;
};

} // namespace ambrel
