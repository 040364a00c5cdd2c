// A button whose mnemonic acts at once.
#pragma once

#include <QPushButton>

namespace host {

/// A plain button shows itself pressed for a tenth of a second before its mnemonic acts; what is typed
/// meanwhile would go to the record that is being left.
class CommandButton : public QPushButton {
public:
    using QPushButton::QPushButton;

protected:
    bool event(QEvent* event) override;
};

} // namespace host
