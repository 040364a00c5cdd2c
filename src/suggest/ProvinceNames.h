// The names of a province's streets, folded, and where each of them is.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "data/TableDefinitions.h"
#include "dbase/dataset/dataset.h"
#include "suggest/NameMatch.h"
#include "suggest/NamePool.h"
#include "suggest/TableStamp.h"

namespace ambrel::suggest {

/// The codes of a row of POSTAL that say where it lies; blank where it does not say.
struct StreetPlace {
    std::string postalCode, ineCode;
    friend auto operator<=>(const StreetPlace&, const StreetPlace&) = default;
};

/// A name with a type in a place.
struct StreetEntry {
    NameNumber name;
    std::uint16_t type;
    std::uint16_t place;
};

/// What was read of a province.
struct ProvinceNames {
    NamePool pool;
    std::vector<StreetEntry> entries; // by name
    std::vector<std::string> types;
    std::vector<StreetPlace> places;
    TableStamp stamp; // of POSTAL when the reading began

    [[nodiscard]] std::size_t bytes() const;
};

/// Reads a province in pieces, through a cursor of its own.
class ProvinceReading {
public:
    ProvinceReading(const std::string& database, const std::string& province);

    /// Reads on until a moment; true when everything has been read.
    [[nodiscard]] bool readUntil(std::chrono::steady_clock::time_point end);
    /// What was read; once.
    [[nodiscard]] std::shared_ptr<ProvinceNames> take();

private:
    void takeRow();
    template<class Value>
    static std::uint16_t numberOf(std::map<Value, std::uint16_t>& known, std::vector<Value>& values,
                                  Value value);

    dbase::Dataset streets_;
    dbase::Field& name_ = streets_.bindCharacter("VIA", streetNameWidth);
    dbase::Field& type_ = streets_.bindCharacter("TIPO_VIA", streetTypeWidth);
    dbase::Field& postalCode_ = streets_.bindCharacter("CODPOSTAL", 5);
    dbase::Field* ineCode_ = nullptr; // null if a foreign table lacks it
    std::shared_ptr<ProvinceNames> read_ = std::make_shared<ProvinceNames>();
    std::map<std::string, std::uint16_t> types_;
    std::map<StreetPlace, std::uint16_t> places_;
    bool isAtEnd_ = false;
};

} // namespace ambrel::suggest
