// Every name of every municipality, folded.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "data/Municipality.h"
#include "data/TableDefinitions.h"
#include "dbase/dataset/dataset.h"
#include "suggest/NameMatch.h"
#include "suggest/NamePool.h"
#include "suggest/NameView.h"
#include "suggest/TableStamp.h"

namespace ambrel::suggest {

/// What a name is to the municipality that it leads to.
enum class NameKind : std::uint8_t { Own, Other, Locality };

/// What was read of MUNICIPI.
struct MunicipalityNames {
    struct Alias {
        std::uint32_t municipality;
        NameKind kind;
    };
    NamePool pool;
    std::vector<Alias> aliases;               // by name of the pool
    std::vector<Municipality> municipalities; // by INE code
    TableStamp stamp;
    std::optional<NameView> own, all; // without and with localities

    /// Null if there is none.
    [[nodiscard]] const Municipality* find(const std::string& ineCode) const;
    [[nodiscard]] std::size_t bytes() const;
};

/// A name from elsewhere: a former one.
struct OtherName {
    std::string ineCode, name; // Windows-1252
};
/// Reads lines "COD_INE,NAME" in UTF-8; a heading and lines that begin with "#" are left out. Errors:
/// dbase::Error, naming the line.
[[nodiscard]] std::vector<OtherName> readOtherNames(const std::string& file);

/// Reads MUNICIPI in pieces, through a cursor of its own.
class MunicipalityReading {
public:
    MunicipalityReading(const std::string& database, std::vector<OtherName> others);

    /// Reads on until a moment; true when everything has been read.
    [[nodiscard]] bool readUntil(std::chrono::steady_clock::time_point end);
    /// What was read; once.
    [[nodiscard]] std::shared_ptr<MunicipalityNames> take();

private:
    void takeRow();
    void addName(std::uint32_t municipality, const std::string& name, NameKind kind);

    dbase::Dataset rows_;
    dbase::Field& ineCode_ = rows_.bindCharacter("COD_INE", 5);
    dbase::Field& postalCode_ = rows_.bindCharacter("CODPOSTAL", 5);
    dbase::Field& onlyCode_ = rows_.bindCharacter("UNICO", 1);
    dbase::Field& name_ = rows_.bindCharacter("NOMBRE", municipalityNameWidth);
    dbase::Field& province_ = rows_.bindCharacter("COD_PROV", 2);
    dbase::Field& isEntity_ = rows_.bindLogical("ENT_MENOR");
    std::vector<OtherName> others_;
    std::shared_ptr<MunicipalityNames> read_ = std::make_shared<MunicipalityNames>();
    std::vector<MunicipalityRows> gathered_;
    std::unordered_map<std::string, std::uint32_t> numbers_;
    std::set<std::pair<std::uint32_t, std::string>> known_;
    bool isAtEnd_ = false;
};

} // namespace ambrel::suggest
