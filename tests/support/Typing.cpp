// Types letters in tests.
#include "support/Typing.h"

#include <QTest>

namespace ambrel::test {

void typeInto(QWidget& control, const QString& text) {
    for (const QChar letter : text) {
        QTest::sendKeyEvent(QTest::Click, &control, static_cast<Qt::Key>(letter.toUpper().unicode()),
                            QString(letter), Qt::NoModifier);
    }
}

} // namespace ambrel::test
