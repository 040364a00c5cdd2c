// Qt's own texts that the program shows, in Spanish.
#pragma once

#include <QTranslator>

namespace host {

/// Also works where Qt's translations are not installed: it has the texts of the command line and of the
/// window that chooses a file.
class SpanishTexts : public QTranslator {
    Q_OBJECT
public:
    using QTranslator::QTranslator;

    /// Makes the application speak Spanish.
    static void install();

    [[nodiscard]] QString translate(const char* context, const char* sourceText,
                                    const char* disambiguation = nullptr, int number = -1) const override;
    [[nodiscard]] bool isEmpty() const override { return false; }
};

} // namespace host
