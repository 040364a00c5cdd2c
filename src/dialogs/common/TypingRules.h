// What a box does to the characters that are typed into it.
#pragma once

#include <QObject>

#include "AmbrelExport.h"

class QInputMethodEvent;
class QKeyEvent;
class QLineEdit;

namespace ambrel {

/// Whether letters become capitals.
enum class Capitals { No, Yes };

/// Turns typed letters into capitals and stops typing at a length. Belongs to its box, which may be the edit
/// of a combo. What the program writes, and an item chosen from a drop-down list, stays whole and as it is:
/// that is why the box's own maximal length, which cuts such texts too, is not used.
class AMBREL_EXPORT TypingRules : public QObject {
    Q_OBJECT
public:
    /// As a maximal length: none.
    static constexpr int anyLength = -1;

    /// The box owns it.
    TypingRules(QLineEdit* box, int maximalLength, Capitals capitals);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    [[nodiscard]] bool hasRoomFor(const QString& typed) const;
    [[nodiscard]] QString withCapitals(const QString& typed) const;
    bool filterKey(const QKeyEvent& event);
    bool filterInput(const QInputMethodEvent& event);

    QLineEdit* box_;
    QObject* typedInto_; // who gets the keys: a combo hands them to its edit
    int maximalLength_;
    Capitals capitals_;
    bool passing_ = false;
};

} // namespace ambrel
