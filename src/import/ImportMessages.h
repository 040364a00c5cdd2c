// What the user sees while streets are imported: the progress window, and message boxes.
#pragma once

#include <QString>

#include "services/Pantalla.h"

class QWidget;

namespace ambrel {

/// Shared by the parts of one import dialog, which have one progress window between them.
class ImportMessages {
public:
    /// The window that owns boxes and progress window; may be null.
    explicit ImportMessages(QWidget* window);

    [[nodiscard]] QWidget* window() const { return window_; }

    /// Opens the progress window. One that is open already stays as it is.
    void open(const QString& text);
    /// Replaces the text of the open progress window.
    void change(const QString& text) const;
    /// Closes the progress window; nothing when none is open.
    void close();

    void info(const QString& text, const QString& title) const;
    void error(const QString& text, const QString& title) const;

private:
    QWidget* window_;
    ProgressWindow Progreso;
};

/// The progress window for the time of a scope.
class ShownProgress {
public:
    /// Opens the window, unless it is open already.
    ShownProgress(ImportMessages& messages, const QString& text) : messages_(messages) {
        messages.open(text);
    }
    ~ShownProgress() { messages_.close(); }
    ShownProgress(const ShownProgress&) = delete;
    ShownProgress& operator=(const ShownProgress&) = delete;

private:
    ImportMessages& messages_;
};

/// Title of the messages that ask for something to be chosen.
[[nodiscard]] QString missingDataTitle();

/// Says that no street was found.
void reportNothingFound(const ImportMessages& messages);

} // namespace ambrel
