// What a report on many addresses shows, as it is collected.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "address/JudgedAddress.h"
#include "address/ValidationReport.h"
#include "report/FrequentTexts.h"

namespace ambrel {

/// One of the first failures of its kind. Texts in UTF-8, fit to be shown.
struct FailedAddress {
    std::uint64_t number, line;
    std::string given;
    std::string street;               // as understood: type, street, number, rest
    std::string place;                // as understood: postal code and municipality
    std::string province;             // as understood: two digits
    std::vector<std::string> remarks; // what would change, the reason, the confidence
    struct Alternative {
        std::string street, place; // one of them may be empty
        std::string province;      // two digits
    };
    std::vector<Alternative> alternatives;
};

/// A part that was written otherwise.
struct Correction {
    std::string part, from, to; // UTF-8, fit to be shown
};
/// For counting: a correction as one text.
[[nodiscard]] std::string asText(const Correction& correction);
[[nodiscard]] Correction correctionOf(const std::string& text);

struct ProvinceCount {
    std::uint64_t rows = 0, settled = 0;
};

/// Everything that rows add to a report.
struct ValidationFindings {
    static constexpr std::size_t mostFailures = 100; // of each kind

    void add(const ValidatedRow& row);

    [[nodiscard]] std::uint64_t count(Verdict verdict) const {
        return verdicts.at(static_cast<std::size_t>(verdict));
    }
    [[nodiscard]] std::uint64_t settled() const;

    std::uint64_t rows = 0;
    std::array<std::uint64_t, verdictCount> verdicts{};
    std::array<std::vector<FailedAddress>, verdictCount> failures;
    std::map<std::string, ProvinceCount> provinces; // by two digits; "" where it is not known
    report::FrequentTexts corrections;              // of the settled addresses
    std::map<JudgedPart, std::uint64_t> additions;  // to the settled addresses
    bool wasInterrupted = false;
};

} // namespace ambrel
