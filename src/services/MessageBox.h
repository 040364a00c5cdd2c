// What is asked of the user in a message box, and the one function that shows it.
#pragma once

#include <QPointer>
#include <QString>
#include <QWidget>
#include <functional>

#include "AmbrelExport.h"

namespace ambrel {

/// What a box is for; it decides the icon.
enum class MessageKind { Error, Information, Warning, Question };

/// Cancel is a box that went without an answer. It counts as no.
enum class MessageAnswer { Accept, Yes, No, Cancel };

/// A box to be shown, with one OK button or, for a question, with yes and no.
struct MessageBox {
    MessageKind kind = MessageKind::Information;
    QString text;
    QString line; // explanatory line below the text; may be empty
    QString title;
    QPointer<QWidget> owner;                             // null: the application's active window
    MessageAnswer defaultButton = MessageAnswer::Accept; // Accept for a box with an OK button, else Yes or No
};

/// Shows a box and returns what was answered.
using MessageShower = std::function<MessageAnswer(const MessageBox&)>;

/// Shows a real box: object "Mensaje" with the buttons "BBAceptar", or "BBSi" and "BBNo". Escape and the
/// close box answer no, or accept where there is nothing to choose.
[[nodiscard]] AMBREL_EXPORT MessageAnswer showMessageBox(const MessageBox& box);

/// Makes every message go through a host's or a test's own function; an empty one brings showMessageBox back.
/// Returns the function that was in force.
AMBREL_EXPORT MessageShower setMessageShower(MessageShower shower);

/// Shows a box through the function in force.
AMBREL_EXPORT MessageAnswer ask(const MessageBox& box);

} // namespace ambrel
