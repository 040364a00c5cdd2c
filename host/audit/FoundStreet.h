// The card of the street that a finding is about.
#pragma once

class TClassCodPostales;

namespace ambrel::directory {
struct Finding;
}

namespace host {

/// Whether there may be a card.
[[nodiscard]] bool isOfStreet(const ambrel::directory::Finding& finding);

/// Opens the card of a finding of POSTAL: users' streets may be changed in it. False if the row is no longer
/// the one that was audited.
[[nodiscard]] bool openStreetCard(const ambrel::directory::Finding& finding, TClassCodPostales& controller);

} // namespace host
