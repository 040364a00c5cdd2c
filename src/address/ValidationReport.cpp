// Collects rows and writes their page.
#include "address/ValidationReport.h"

#include "address/ValidationFindings.h"
#include "address/ValidationPage.h"
#include "report/WholeFile.h"

namespace ambrel {

struct ValidationReport::Findings {
    ValidationRun run;
    ValidationFindings found;
};

ValidationReport::ValidationReport(ValidationRun run) : findings_(std::make_unique<Findings>()) {
    findings_->run = std::move(run);
}

ValidationReport::~ValidationReport() = default;

void ValidationReport::requireWritable(const std::string& file) { report::requireWritable(file); }

void ValidationReport::add(const ValidatedRow& row) { findings_->found.add(row); }

void ValidationReport::setInterrupted() { findings_->found.wasInterrupted = true; }

void ValidationReport::write(const std::string& file) const {
    report::writeWholeFile(file, validationPage(findings_->run, findings_->found));
}

} // namespace ambrel
