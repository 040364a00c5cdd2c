// The order of characters in the keys of the collating language drivers.
#pragma once

#include <array>
#include <cstdint>

namespace dbase {

/// Weight of each byte in keys of the collating drivers (0x58, 0x59). All 256 differ, so equal keys have
/// equal bytes.
[[nodiscard]] const std::array<std::uint8_t, 256>& collationWeights();

/// True for the drivers whose character keys are ordered by weight: 0x58, 0x59.
[[nodiscard]] bool driverCollates(std::uint8_t languageDriver);
/// True for the OEM Spanish drivers 0x14 and 0x18, which collate by unpublished weights.
[[nodiscard]] bool driverOrderIsUnknown(std::uint8_t languageDriver);

} // namespace dbase
