// Suggestions read again, so that nothing is shown that is gone.
#pragma once

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "data/TableDefinitions.h"
#include "dbase/dataset/dataset.h"
#include "suggest/ProvinceNames.h"

namespace ambrel::suggest {

/// What POSTAL holds of a street now.
struct LiveStreet {
    std::string key;                   // CODIGO1 of its first stretch
    std::set<std::string> postalCodes; // of its stretches
};

class LiveRows {
public:
    /// Whether a row at a place is one of the street's, and whether it carries the municipality's own code.
    enum class Belongs { No, Yes, WithOwnCode };
    using Judge = std::function<Belongs(const StreetPlace&)>;

    explicit LiveRows(std::string database) : streets_(std::move(database), "POSTAL", "NOMBREVIA") {}

    /// The street with this name and type in a province, adding to `found`. Where rows carry the
    /// municipality's own code, the others do not count.
    void add(std::optional<LiveStreet>& found, bool& hasOwn, const std::string& province,
             std::string_view name, std::string_view type, const Judge& judge);

private:
    dbase::Dataset streets_;
    dbase::Field& key_ = streets_.bindCharacter("CODIGO1", 8);
    dbase::Field& province_ = streets_.bindCharacter("PROVINCIA", 2);
    dbase::Field& type_ = streets_.bindCharacter("TIPO_VIA", streetTypeWidth);
    dbase::Field& name_ = streets_.bindCharacter("VIA", streetNameWidth);
    dbase::Field& postalCode_ = streets_.bindCharacter("CODPOSTAL", 5);
    dbase::Field* ineCode_ = nullptr; // null if a foreign table lacks it
};

} // namespace ambrel::suggest
