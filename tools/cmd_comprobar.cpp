// ambcp comprobar: everything that is wrong with a table, or with all of a folder.

#include <algorithm>
#include <cstdio>

#include "data/TableDefinitions.h"
#include "dbase/check.h"
#include "dbase/error.h"
#include "tools/commands.h"
#include "tools/progress.h"
#include "tools/table_folder.h"

namespace ambcp {

namespace {

/// Engine texts may begin with the file, which the finding names already.
std::string_view withoutFile(const dbase::Finding& finding) {
    const std::string prefix = finding.file + ": ";
    return std::string_view(finding.text).substr(finding.text.starts_with(prefix) ? prefix.size() : 0);
}

std::string count(std::size_t number, const char* one, const char* many) {
    return std::to_string(number) + ' ' + (number == 1 ? one : many);
}

void print(const std::string& table, const dbase::CheckResult& result) {
    for (const dbase::Finding& finding : result.findings) {
        const std::string_view text = withoutFile(finding);
        std::printf("%s: %s: %.*s\n", finding.file.c_str(), finding.place.c_str(),
                    static_cast<int>(text.size()), text.data());
    }
    const std::string problems =
        result.findings.empty()
            ? "correcta"
            : count(result.findings.size(), "problema", "problemas") + (result.truncated ? " y más" : "");
    std::printf("%s: %s, %s: %s\n", tableName(table).c_str(),
                count(result.records, "registro", "registros").c_str(),
                count(result.tags, "tag", "tags").c_str(), problems.c_str());
}

ExitCode check(const std::string& table) {
    const auto known = ambrel::tableDefinition(tableName(table));
    const auto knownTags = known ? known->tags : std::vector<dbase::TagDefinition>();
    try {
        dbase::CheckResult result;
        {
            ProgressLine line(tableName(table));
            result = dbase::checkTable(
                table, [&](std::uint64_t done, std::uint64_t total) { line.share(done, total); }, knownTags);
        }
        print(table, result);
        return result.findings.empty() ? ExitCode::done : ExitCode::negative;
    } catch (const dbase::Error& error) {
        std::fprintf(stderr, "ambcp: %s\n", error.what()); // the other tables are checked all the same
        return ExitCode::failed;
    }
}

} // namespace

ExitCode comprobar(const TablesOptions& options) {
    ExitCode worst = ExitCode::done;
    for (const std::string& table : tablesNamed(useFolder(options.folder), options.table)) {
        worst = std::max(worst, check(table));
    }
    return worst;
}

} // namespace ambcp
