// Messages to the user during an import: the progress window, and message boxes.
#pragma once

#include <QString>

#include "services/Pantalla.h"

class QWidget;

namespace ambrel {

/// Shared by the parts of one import dialog, which have a single progress window.
class ImportMessages {
public:
    /// `window` owns the boxes and the progress window; may be null.
    explicit ImportMessages(QWidget* window);

    [[nodiscard]] QWidget* window() const { return window_; }

    /// Opens the progress window; does nothing if it is open already.
    void open(const QString& text);
    /// Replaces the text of the open progress window.
    void change(const QString& text) const;
    /// Closes the progress window, if open.
    void close();

    void info(const QString& text, const QString& title) const;
    void error(const QString& text, const QString& title) const;

private:
    QWidget* window_;
    ProgressWindow Progreso;
};

/// Shows the progress window for the duration of a scope.
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

/// Title of the messages that ask the user to choose something.
[[nodiscard]] QString missingDataTitle();

/// Reports that no street was found.
void reportNothingFound(const ImportMessages& messages);

} // namespace ambrel
