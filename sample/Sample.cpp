#include "sample/Sample.h"

#include "sample/SampleData.h"
#include "tools/new_tables.h"
#include "tools/table_loading.h"

namespace ambrel {

namespace {

void loadSample(const std::string& name, const std::string& tableFile) {
    for (const SampleFile& file : sampleFiles()) {
        if (file.table == name) {
            const std::string_view text(reinterpret_cast<const char*>(file.csv.data()), file.csv.size());
            ambcp::CsvReader csv(ambcp::textSource(text), name + ".csv");
            ambcp::loadCsv(csv, tableFile, dbase::BulkLoader::Mode::Append);
        }
    }
}

} // namespace

void createSample(const std::string& folder, dbase::IfExists ifExists) {
    ambcp::createPostalTables(folder, ifExists, loadSample);
}

} // namespace ambrel
