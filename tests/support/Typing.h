// Typing in tests.
#pragma once

#include <QString>
#include <QWidget>

namespace ambrel::test {

/// Presses and releases the key of each letter in a control, including accented letters, which
/// QTest::keyClicks does not type.
void typeInto(QWidget& control, const QString& text);

} // namespace ambrel::test
