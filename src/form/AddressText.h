// Address resolution without boxes, in window texts.
#pragma once

#include <QString>

#include "AmbrelExport.h"
#include "address/AddressResolution.h"

namespace ambrel {

/// Query and answer in window texts.
using TypedAddressText = TypedAddressOf<QString>;
using ResolvedAddressText = ResolvedAddressOf<QString>;

/// resolveAddress() for window texts; needs neither a QApplication nor a screen. A text that the tables
/// cannot hold matches nothing and is returned as typed.
[[nodiscard]] AMBREL_EXPORT ResolvedAddressText resolveAddressText(const std::string& database,
                                                                   const TypedAddressText& typed);

} // namespace ambrel
