// An address settled without boxes, in the texts of windows.
#pragma once

#include <QString>

#include "AmbrelExport.h"
#include "address/AddressResolution.h"

namespace ambrel {

/// What is asked and answered, in texts of windows.
using TypedAddressText = TypedAddressOf<QString>;
using ResolvedAddressText = ResolvedAddressOf<QString>;

/// resolveAddress() for texts of windows; needs neither a QApplication nor a screen. A text that the tables
/// cannot hold matches nothing, and is answered as typed.
[[nodiscard]] AMBREL_EXPORT ResolvedAddressText resolveAddressText(const std::string& database,
                                                                   const TypedAddressText& typed);

} // namespace ambrel
