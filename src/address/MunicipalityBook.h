// Municipalities by name and by postal code, each looked up once while the table stands.
#pragma once

#include <array>
#include <memory>
#include <optional>
#include <span>
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

    /// Announces named(): what is known of these names is fetched from memory at the same time.
    void expect(std::span<const std::string_view> names);
    /// The municipalities with exactly this name, in code order.
    [[nodiscard]] const std::vector<MunicipalityPointer>& named(std::string_view name);
    /// Those with a postal code, in code order.
    [[nodiscard]] const std::vector<MunicipalityPointer>& withPostalCode(std::string_view code);
    /// Null if there is none.
    [[nodiscard]] MunicipalityPointer find(const std::string& ineCode);

private:
    using Some = std::vector<MunicipalityPointer>;
    using Named = std::pair<const std::string, Some>;
    struct Lately {
        std::size_t hash = 0;
        const Named* named = nullptr;
    };
    [[nodiscard]] const Named* latelyNamed(std::size_t hash) const;
    [[nodiscard]] const Named& findNamed(std::string_view name);
    void keepWithinBounds();
    void forget();

    AddressDirectory& directory_;
    dbase::Dataset rows_; // by postal code, minor entities included
    dbase::Field& ineCode_ = rows_.bindCharacter("COD_INE", 5);
    dbase::Field& postalCode_ = rows_.bindCharacter("CODPOSTAL", 5);
    suggest::TableStamp stamp_;
    suggest::TextMap<Some> byName_, byPostalCode_;
    /// The names asked for last, two for each remainder of their hashes: found without the map's steps
    /// through memory.
    std::vector<std::array<Lately, 2>> lately_;
    std::vector<std::size_t> expectedHashes_; // of expect(), as are these
    std::vector<const Named*> expected_;
    suggest::TextMap<std::unique_ptr<const Municipality>> byIneCode_; // those that the others point at
};

} // namespace ambrel
