// What a user does with keyboard and mouse, as the actions of a script. Objects are looked up again for each
// action.
#pragma once

#include "host/script/KeyNames.h"
#include "host/script/ObjectLookup.h"
#include "host/script/Outcome.h"

namespace host::script {

class Input {
public:
    explicit Input(const ObjectLookup& lookup) : lookup_(lookup) {}

    /// Types a text at the caret.
    [[nodiscard]] Actions type(const QString& object, const QString& text) const;
    /// Pastes a text at the caret, from the clipboard and by keys.
    [[nodiscard]] Actions paste(const QString& object, const QString& text) const;
    /// Selects all and deletes it.
    [[nodiscard]] Actions clear(const QString& object) const;
    [[nodiscard]] Actions key(const QString& object, const KeyStroke& key) const;
    /// Clicks in the middle, in a grid on the current row.
    [[nodiscard]] Actions click(const QString& object) const;
    [[nodiscard]] Actions doubleClick(const QString& object) const;
    /// Clicks the title of a grid's column.
    [[nodiscard]] Actions clickTitle(const QString& grid, int column) const;
    /// Opens a combo and takes an item from its list.
    [[nodiscard]] Actions choose(const QString& combo, const QString& item) const;

private:
    /// Focuses the object, if it does not have the focus, then presses and releases each key.
    [[nodiscard]] Actions strokes(const QString& object, const std::vector<KeyStroke>& keys) const;
    [[nodiscard]] Action mustTakeText(const QString& object) const;
    [[nodiscard]] Action focus(const QString& object) const;
    [[nodiscard]] Action press(const QString& object, const KeyStroke& key) const;
    [[nodiscard]] Action clickAction(const QString& object, bool twice) const;

    const ObjectLookup& lookup_;
};

} // namespace host::script
