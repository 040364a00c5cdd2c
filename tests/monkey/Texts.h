// What the monkey types.
#pragma once

#include <QString>
#include <QStringList>

namespace monkey {

/// An address of the sample tables.
struct SampleAddress {
    const char *town, *streetType, *street, *number;
};

/// The number of addresses, and each of them.
[[nodiscard]] int addressCount();
[[nodiscard]] const SampleAddress& addressAt(int index);

/// Words, whole addresses, misspellings, nonsense, file names, odd letters and very long lines.
[[nodiscard]] const QStringList& texts();

} // namespace monkey
