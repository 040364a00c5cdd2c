// ambcp sugerir: what may have been meant by a name that is not written as the tables hold it.

#include <array>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <optional>

#include <unistd.h>

#include "dbase/system/counted.h"
#include "dbase/system/quoted.h"
#include "loading/ansi_text.h"
#include "loading/csv.h"
#include "loading/failure.h"
#include "loading/utf8.h"
#include "suggest/Letters.h"
#include "suggest/Suggestions.h"
#include "tools/commands.h"
#include "tools/complain.h"
#include "tools/table_folder.h"

namespace ambcp {

namespace {

/// The program ends soon: provinces are kept as long as there is some memory.
constexpr std::size_t memory = std::size_t{1} << 30;
constexpr std::size_t mostUnlessSaid = 5;

struct Query {
    std::string municipality, province, street, type; // UTF-8
};

/// Letters that the tables cannot hold separate words. Bytes that are not UTF-8 are taken for Windows-1252.
std::string ansi(const std::string& text) { return loading::ansiFromUtf8(text).value_or(text); }

/// Rounded down: 1 means 1.
std::string pointsText(double points) {
    std::array<char, 16> text;
    const int size =
        std::snprintf(text.data(), text.size(), "%.3f", static_cast<int>(points * 1000 + 1e-6) / 1000.0);
    return {text.data(), static_cast<std::size_t>(size)};
}

std::string joinedCodes(const std::vector<std::string>& codes) {
    std::string text;
    for (const std::string& code : codes) {
        text += (text.empty() ? "" : " ") + code;
    }
    return text;
}

/// Answers queries and writes the suggestions.
class SuggestionOutput {
public:
    SuggestionOutput(std::size_t most, bool isNumbered)
        : suggestions_(folderDatabase, {.memory = memory}), most_(most), csv_(STDOUT_FILENO) {
        if (isNumbered) {
            csv_.field("CONSULTA");
        }
        for (const char* const column :
             {"PUNTOS", "COD_INE", "MUNICIPIO", "PROVINCIA", "TIPO_VIA", "VIA", "CODPOSTALES"}) {
            csv_.field(column);
        }
        csv_.endRecord();
    }

    /// Whether the province of a query, if it names one, is known.
    [[nodiscard]] bool knowsProvince(const Query& query) {
        return query.province.empty() || !suggestions_.provinceNamed(ansi(query.province)).empty();
    }

    /// Writes the suggestions for a query, each after `number` if given. False if there are none.
    bool answer(const Query& query, std::optional<std::uint64_t> number = {}) {
        const ambrel::MunicipalityQuery municipality{ansi(query.municipality), ansi(query.province)};
        if (ambrel::suggest::foldLetters(ansi(query.street)).empty()) {
            const auto found = suggestions_.municipalities(municipality, most_);
            for (const ambrel::SuggestedMunicipality& one : found) {
                write(number, one.points, one.ineCode, one.name, one.province, "", "", one.postalCodes);
            }
            return !found.empty();
        }
        const auto found =
            suggestions_.addresses({municipality, ansi(query.street), ansi(query.type)}, most_);
        for (const ambrel::SuggestedStreet& one : found) {
            write(number, one.points, one.ineCode, one.municipality, one.province, one.type, one.name,
                  one.postalCodes);
        }
        return !found.empty();
    }

    void flush() { csv_.flush(); }

private:
    void write(std::optional<std::uint64_t> number, double points, const std::string& ineCode,
               const std::string& municipality, const std::string& province, const std::string& type,
               const std::string& street, const std::vector<std::string>& codes) {
        if (number) {
            csv_.field(std::to_string(*number));
        }
        csv_.field(pointsText(points));
        csv_.field(loading::utf8FromAnsi(ineCode));
        csv_.field(loading::utf8FromAnsi(municipality));
        const std::string name = suggestions_.provinceName(province);
        csv_.field(loading::utf8FromAnsi(name.empty() ? province : name));
        csv_.field(loading::utf8FromAnsi(type));
        csv_.field(loading::utf8FromAnsi(street));
        csv_.field(joinedCodes(codes));
        csv_.endRecord();
    }

    ambrel::Suggestions suggestions_;
    std::size_t most_;
    loading::CsvWriter csv_;
};

/// Where the columns of a file of queries stand; absent ones are empty.
class QueryColumns {
public:
    explicit QueryColumns(const loading::CsvReader& csv) : count_(csv.fields().size()) {
        for (std::size_t i = 0; i < count_; ++i) {
            const std::string name = ambrel::suggest::foldLetters(ansi(std::string(csv.fields()[i].text)));
            for (std::size_t column = 0; column < names_.size(); ++column) {
                if (name != names_[column]) {
                    continue;
                }
                if (places_[column]) {
                    throw loading::CsvError(csv.name(), csv.line(), 1,
                                            "la columna " + dbase::inQuotes(csv.fields()[i].text) +
                                                " está repetida");
                }
                places_[column] = i;
            }
        }
        if (!places_[0]) {
            throw loading::CsvError(csv.name(), csv.line(), 1, "falta la columna municipio");
        }
    }

    [[nodiscard]] Query read(const loading::CsvReader& csv) const {
        if (csv.fields().size() != count_) {
            throw loading::CsvError(csv.name(), csv.line(), 1,
                                    "la fila tiene " +
                                        dbase::counted(csv.fields().size(), "valor", "valores") +
                                        " y la primera " + std::to_string(count_));
        }
        const auto value = [&](std::size_t column) {
            if (!places_[column]) {
                return std::string();
            }
            const loading::CsvField& field = csv.fields()[*places_[column]];
            if (!loading::isUtf8(field.text)) {
                throw loading::CsvError(csv.name(), field.line, 1,
                                        dbase::inQuotes(field.text) + " no está en UTF-8");
            }
            return std::string(field.text);
        };
        return {value(0), value(1), value(2), value(3)};
    }

private:
    static constexpr std::array<std::string_view, 4> names_{"MUNICIPIO", "PROVINCIA", "VIA", "TIPO"};
    std::array<std::optional<std::size_t>, 4> places_;
    std::size_t count_;
};

ExitCode answerFile(const std::string& file, SuggestionOutput& output) {
    const std::string name = file == "-" ? "entrada estándar" : file;
    loading::CsvReader csv(file == "-" ? loading::standardInput(name) : loading::fileSource(file), name);
    if (!csv.next()) {
        throw loading::Failure(name + ": no hay ninguna fila; la primera da los nombres de las columnas");
    }
    const QueryColumns columns(csv);
    for (std::uint64_t number = 1; csv.next(); ++number) {
        const Query query = columns.read(csv);
        if (!output.knowsProvince(query)) {
            complain("consulta " + std::to_string(number) + ": no se conoce la provincia «" + query.province +
                     "».");
            continue;
        }
        output.answer(query, number);
    }
    output.flush();
    return ExitCode::done;
}

} // namespace

ExitCode sugerir(const SuggestOptions& options) {
    usePostalTables(options.folder);
    if (options.file.empty() == options.municipality.empty()) {
        throw loading::Failure("se da --municipio, o --lote con un fichero de consultas");
    }
    const std::size_t most = static_cast<std::size_t>(std::min<std::uint64_t>(
        options.most.value_or(mostUnlessSaid), std::numeric_limits<std::uint32_t>::max()));
    SuggestionOutput output(most, !options.file.empty());
    if (!options.file.empty()) {
        return answerFile(options.file, output);
    }
    const Query query{options.municipality, options.province, options.street, options.type};
    if (!output.knowsProvince(query)) {
        throw loading::Failure("no se conoce la provincia «" + query.province + "»");
    }
    const bool isAnswered = output.answer(query);
    output.flush();
    return isAnswered ? ExitCode::done : ExitCode::negative;
}

} // namespace ambcp
