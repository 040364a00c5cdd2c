// A button whose mnemonic acts at once.
#pragma once

#include <QPushButton>

namespace host {

/// A plain button looks pressed for a tenth of a second before its mnemonic acts; letters typed in that time
/// would go to the record that is being left.
class CommandButton : public QPushButton {
public:
    using QPushButton::QPushButton;

protected:
    bool event(QEvent* event) override;
};

} // namespace host
