// The suggestions that verdicts ask, without the rows that they would read again for a user.
#pragma once

#include <string>

#include "suggest/MunicipalitySuggester.h"
#include "suggest/ProvinceText.h"
#include "suggest/StreetSuggester.h"

namespace ambrel {

struct Suggesters {
    Suggesters(const std::string& database, std::size_t memory)
        : provinces(database), municipalities(database, {}, provinces),
          streets(database, memory, municipalities) {}
    Suggesters(const Suggesters&) = delete;
    Suggesters& operator=(const Suggesters&) = delete;

    suggest::ProvinceText provinces;
    suggest::MunicipalitySuggester municipalities;
    suggest::StreetSuggester streets;
};

} // namespace ambrel
