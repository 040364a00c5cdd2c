// Municipalities by name and by postal code, each looked up once while the table stands.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "address/AddressDirectory.h"
#include "suggest/TableStamp.h"
#include "suggest/WordLists.h"

namespace ambrel {

/// Stays valid until MunicipalityBook::renew().
using MunicipalityPointer = const Municipality*;

/// Answers as AddressDirectory does. Errors: dbase::Error.
class MunicipalityBook {
public:
    MunicipalityBook(const std::string& database, AddressDirectory& directory);

    /// Forgets everything if MUNICIPI has changed since. Call before each address.
    void renew();

    /// The municipalities with exactly this name, in code order.
    [[nodiscard]] const std::vector<MunicipalityPointer>& named(std::string_view name);
    /// Those with a postal code, in code order.
    [[nodiscard]] const std::vector<MunicipalityPointer>& withPostalCode(std::string_view code);
    /// Null if there is none.
    [[nodiscard]] MunicipalityPointer find(const std::string& ineCode);

private:
    using Some = std::vector<MunicipalityPointer>;
    using Named = std::pair<const std::string, Some>;
    void keepWithinBounds();
    void forget();

    AddressDirectory& directory_;
    dbase::Dataset rows_; // by postal code, minor entities included
    dbase::Field& ineCode_ = rows_.bindCharacter("COD_INE", 5);
    dbase::Field& postalCode_ = rows_.bindCharacter("CODPOSTAL", 5);
    suggest::TableStamp stamp_;
    suggest::TextMap<Some> byName_, byPostalCode_;
    /// The name asked for last among those with a remainder: found without the map's steps through memory.
    std::vector<const Named*> lately_;
    suggest::TextMap<std::unique_ptr<const Municipality>> byIneCode_; // those that the others point at
};

} // namespace ambrel
