#include <string>
#include <vector>

#include "address/AddressValidator.h"
#include "address/ValidatedRow.h"
#include "address/ValidationReport.h"

// Judges addresses of the host's own, and leaves a report on them. Texts in Windows-1252; file names in
// UTF-8.
void reportOn(const std::vector<ambrel::GivenAddress>& customers, const std::string& htmlFile) {
    ambrel::ValidationReport::requireWritable(htmlFile);
    ambrel::AddressValidator validator("DB");
    ambrel::ValidationRun run;
    run.input = "Clientes";
    run.provinceName = [&](const std::string& province) { return validator.provinceName(province); };
    ambrel::ValidationReport report(run);
    std::uint64_t number = 0;
    for (const ambrel::GivenAddress& given : customers) {
        const ambrel::JudgedAddress judged = validator.validate(given);
        if (ambrel::isSettled(judged.verdict)) {
            // judged.street, judged.postalCode and the others may be stored.
        }
        report.add({++number, 0, given, judged});
    }
    report.write(htmlFile);
}
