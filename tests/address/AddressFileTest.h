// Test fixture: a few municipalities and streets, and files of addresses validated against them.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "address/AddressFile.h"
#include "controller/StreetTables.h"
#include "loading/csv.h"

namespace postal_tests {

/// What validating a file gives.
struct FileOutcome {
    std::string result, unsettled;
    ambrel::AddressFileTotals totals;
    std::vector<ambrel::Verdict> verdicts;
    std::vector<std::string> places; // of the rows: number, line
};

class AddressFileTest : public StreetTables {
protected:
    void SetUp() override {
        addMunicipalities({{"28079", "28004", "MADRID", "N", "0"},
                           {"28079", "28013", "MADRID", "N", "0"},
                           {"15031", "15500", "CORUÑA, LA", "N", "0"},
                           {"28065", "28901", "GETAFE", "S", "9"}});
        addStreets(
            {{"10", "GRAN VIA", "CL", "28013", {1, 41}, {2, 48}},
             {"11", "GRAN VIA", "CL", "28004", {43, 9999}, {50, 9998}},
             {"12", "MAYOR", "CL", "28013"},
             {.codigo1 = "30", .via = "ESPAÑA", .tipo = "AV", .codPostal = "15500", .provincia = "15"}});
    }

    static ambrel::AddressFileInput input(std::string_view text) {
        return {loading::textSource(text), "prueba.csv", text.size()};
    }

    static FileOutcome validate(const ambrel::AddressFileInput& file,
                                ambrel::AddressFileOptions options = {}) {
        options.threads = options.threads == 0 ? 2 : options.threads;
        FileOutcome outcome;
        outcome.totals = ambrel::validateAddressFile(
            file, options,
            {.write = [&](std::string_view text) { outcome.result += text; },
             .writeUnsettled = [&](std::string_view text) { outcome.unsettled += text; },
             .row =
                 [&](const ambrel::ValidatedRow& row) {
                     outcome.verdicts.push_back(row.judged.verdict);
                     outcome.places.push_back(std::to_string(row.number) + ':' + std::to_string(row.line));
                 }});
        return outcome;
    }
    static FileOutcome validate(std::string_view text, const ambrel::AddressFileOptions& options = {}) {
        return validate(input(text), options);
    }
};

} // namespace postal_tests
