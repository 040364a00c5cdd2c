// Municipalities by name, INE code or postal code.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "suggest/Kept.h"
#include "suggest/MunicipalityNames.h"
#include "suggest/ProvinceText.h"
#include "suggest/Suggestions.h"

namespace ambrel::suggest {

class MunicipalitySuggester {
public:
    using Clock = std::chrono::steady_clock;

    MunicipalitySuggester(std::string database, const std::string& otherNames, ProvinceText& provinces);

    [[nodiscard]] bool renew(Clock::time_point end);
    [[nodiscard]] std::vector<SuggestedMunicipality> suggest(const MunicipalityQuery& query,
                                                             std::size_t most);

    /// As read last; null if there is none. Call after renew().
    [[nodiscard]] const Municipality* find(const std::string& ineCode) const;
    /// The only municipality with a postal code; null if there are several or none. Call after renew().
    [[nodiscard]] const Municipality* onlyOneWith(const std::string& postalCode) const;
    /// Another number whenever these answers may have changed. Call after renew().
    [[nodiscard]] unsigned generation() const { return generation_; }
    /// The municipality with an INE code now; null if there is none.
    [[nodiscard]] std::optional<Municipality> now(const std::string& ineCode);
    [[nodiscard]] std::size_t bytes() const { return kept_.bytes(); }

private:
    struct Candidate;
    [[nodiscard]] std::vector<Candidate> byCode(const std::string& digits, const std::string& province) const;
    [[nodiscard]] std::vector<Candidate> byName(const MunicipalityQuery& query,
                                                const std::string& province) const;
    [[nodiscard]] std::optional<SuggestedMunicipality> readAgain(const Candidate& candidate,
                                                                 const std::string& typed);
    void openCursor();

    std::string database_, otherNames_;
    ProvinceText& provinces_;
    Kept<MunicipalityNames, MunicipalityReading> kept_;
    std::optional<dbase::Dataset> stamps_; // open all the time, to see changes
    std::optional<MunicipalityCursor> cursor_;
    std::multimap<std::string, std::uint32_t> byPostalCode_;
    std::shared_ptr<MunicipalityNames> indexed_; // what byPostalCode_ was made of
    unsigned generation_ = 0;
};

} // namespace ambrel::suggest
