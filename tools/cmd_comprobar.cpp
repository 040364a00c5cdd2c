// ambcp comprobar: everything that is wrong with a table, or with all tables of a folder.

#include <algorithm>
#include <cstdio>

#include "data/TableDefinitions.h"
#include "dbase/system/counted.h"
#include "dbase/system/databases.h"
#include "dbase/system/error.h"
#include "dbase/table/check.h"
#include "tools/commands.h"
#include "tools/complain.h"
#include "tools/cut_table.h"
#include "tools/progress.h"
#include "tools/table_folder.h"

namespace ambcp {

namespace {

/// Engine texts may begin with the file, which the finding already names.
std::string_view withoutFile(const dbase::Finding& finding) {
    const std::string prefix = finding.file + ": ";
    return std::string_view(finding.text).substr(finding.text.starts_with(prefix) ? prefix.size() : 0);
}

/// What the header of a table shows by itself.
struct HeaderState {
    bool isReadable = true;
    std::optional<Shortfall> shortfall;
};

HeaderState headerState(const std::string& table) {
    try {
        return {.isReadable = true, .shortfall = shortfallOf(table)};
    } catch (const dbase::Error& error) {
        if (error.code() != dbase::ErrorCode::BadTable && error.code() != dbase::ErrorCode::TooLarge) {
            throw;
        }
        return {.isReadable = error.code() == dbase::ErrorCode::TooLarge, .shortfall = {}};
    }
}

/// The tags of a cut table point to the lost records one by one, which would repeat one finding many times.
void tellShortfallOnce(const std::string& table, const Shortfall& shortfall, dbase::CheckResult& result) {
    const std::size_t fromIndex =
        std::erase_if(result.findings, [&](const dbase::Finding& finding) { return finding.file != table; });
    result.truncated = result.truncated && fromIndex == 0;
    std::erase_if(result.findings, [](const dbase::Finding& finding) { return finding.place == "cabecera"; });
    result.findings.insert(result.findings.begin(),
                           {.file = table, .place = "cabecera", .text = describe(shortfall)});
}

/// Advice about the findings, as far as it is known.
std::string advice(const std::string& table, const dbase::CheckResult& result, const HeaderState& state,
                   bool knowsTags) {
    const bool hasIndex = dbase::findIndexFile(table).has_value();
    const bool concernsIndex = std::ranges::any_of(
        result.findings, [&](const dbase::Finding& finding) { return finding.file != table; });
    if (result.findings.empty() || state.shortfall) { // its description says what to do
        return {};
    }
    if (!state.isReadable || (!hasIndex && !knowsTags)) {
        return "; recupere la copia de seguridad";
    }
    return concernsIndex || !hasIndex ? "; \"ambcp reindexar\" rehace el índice" : "";
}

void print(const dbase::Finding& finding, const char* kind) {
    const std::string_view text = withoutFile(finding);
    std::printf("%s: %s%s: %.*s\n", finding.file.c_str(), kind, finding.place.c_str(),
                static_cast<int>(text.size()), text.data());
}

void print(const std::string& table, const dbase::CheckResult& result, const std::string& whatToDo) {
    for (const dbase::Finding& finding : result.findings) {
        print(finding, "");
    }
    for (const dbase::Finding& note : result.notes) {
        print(note, "nota: ");
    }
    if (!result.isChecked) {
        std::printf("%s: sin comprobar\n", tableName(table).c_str());
        return;
    }
    const std::string problems = result.findings.empty()
                                     ? "correcta"
                                     : dbase::counted(result.findings.size(), "problema", "problemas") +
                                           (result.truncated ? " y más" : "") + whatToDo;
    std::printf("%s: %s, %s: %s\n", tableName(table).c_str(),
                dbase::counted(result.records, "registro", "registros").c_str(),
                dbase::counted(result.tags, "tag", "tags").c_str(), problems.c_str());
}

ExitCode check(const std::string& table) {
    const auto known = ambrel::tableDefinition(tableName(table));
    const auto knownTags = known ? known->tags : std::vector<dbase::TagDefinition>();
    try {
        const HeaderState state = headerState(table);
        dbase::CheckResult result;
        {
            ProgressLine line(tableName(table));
            result = dbase::checkTable(
                table, [&](std::uint64_t done, std::uint64_t total) { line.share(done, total); }, knownTags);
        }
        if (state.shortfall && result.isChecked) {
            tellShortfallOnce(table, *state.shortfall, result);
        }
        print(table, result, advice(table, result, state, known.has_value()));
        return result.findings.empty() ? ExitCode::done : ExitCode::negative;
    } catch (const dbase::Error& error) {
        complain(error.what()); // the other tables are still checked
        return ExitCode::failed;
    }
}

/// The tables that a folder with some of the five lacks.
std::vector<std::string> missingTables(const std::string& folder) {
    const std::vector<dbase::TableDefinition> all = ambrel::tableDefinitions();
    std::vector<std::string> missing;
    for (const dbase::TableDefinition& definition : all) {
        if (!dbase::findTableFile(folder, definition.name)) {
            missing.push_back(definition.name);
        }
    }
    return missing.size() == all.size() ? std::vector<std::string>() : missing;
}

} // namespace

ExitCode comprobar(const TablesOptions& options) {
    ExitCode worst = ExitCode::done;
    const std::string folder = useFolder(options.folder);
    for (const std::string& table : tablesNamed(folder, options.table)) {
        worst = std::max(worst, check(table));
    }
    if (options.table.empty()) {
        for (const std::string& table : missingTables(folder)) {
            std::printf("%s: falta la tabla; recupere la copia de seguridad\n", table.c_str());
            worst = std::max(worst, ExitCode::negative);
        }
    }
    return worst;
}

} // namespace ambcp
