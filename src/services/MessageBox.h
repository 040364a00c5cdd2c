// What a message box asks of the user, and the one function that shows it.
#pragma once

#include <QPointer>
#include <QString>
#include <QWidget>
#include <functional>

#include "AmbrelExport.h"

namespace ambrel {

/// Purpose of a box; determines its icon.
enum class MessageKind { Error, Information, Warning, Question };

/// Cancel: the box was closed without an answer. It counts as no.
enum class MessageAnswer { Accept, Yes, No, Cancel };

/// A box to show, with one OK button or, for a question, with yes and no.
struct MessageBox {
    MessageKind kind = MessageKind::Information;
    QString text;
    QString line; // explanatory line below the text; may be empty
    QString title;
    QPointer<QWidget> owner;                             // null: the application's active window
    MessageAnswer defaultButton = MessageAnswer::Accept; // Accept for a box with an OK button, else Yes or No
};

/// Shows a box and returns the answer.
using MessageShower = std::function<MessageAnswer(const MessageBox&)>;

/// Shows a real box: object "Mensaje" with the buttons "BBAceptar", or "BBSi" and "BBNo". Escape and the
/// close button answer no, or accept if there is nothing to choose.
[[nodiscard]] AMBREL_EXPORT MessageAnswer showMessageBox(const MessageBox& box);

/// Sends every message through a function of the host or of a test; an empty one restores showMessageBox.
/// Returns the previous function.
AMBREL_EXPORT MessageShower setMessageShower(MessageShower shower);

/// Shows a box through the current function.
AMBREL_EXPORT MessageAnswer ask(const MessageBox& box);

} // namespace ambrel
