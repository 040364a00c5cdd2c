// ambcp callejero cargar: an edition of the official street directory into tables without streets.

#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>

#include <unistd.h>

#include "dbase/dbf/codepage.h"
#include "dbase/system/databases.h"
#include "dbase/system/quoted.h"
#include "directory/DirectoryLoading.h"
#include "loading/counted.h"
#include "loading/csv.h"
#include "tools/commands.h"
#include "tools/complain.h"
#include "tools/created_tables.h"
#include "tools/cut_table.h"
#include "tools/interruption.h"
#include "tools/progress.h"
#include "tools/table_folder.h"

namespace ambcp {

namespace {

using ambrel::directory::DirectoryLoading;
using ambrel::directory::Edition;
using ambrel::directory::EditionFiles;
using ambrel::directory::EditionNotes;
using ambrel::directory::LoadingProgress;
using ambrel::directory::LoadingStep;
using ambrel::directory::LoadSummary;
using ambrel::directory::RangeOpening;
using loading::counted;

RangeOpening openingNamed(const std::string& name) {
    return name == "no" ? RangeOpening::None : name == "huecos" ? RangeOpening::Gaps : RangeOpening::Ends;
}

bool hasTables(const std::string& folder) {
    std::error_code problem;
    return std::filesystem::is_directory(folder, problem) &&
           (dbase::findTableFile(folder, "POSTAL") || dbase::findTableFile(folder, "MUNICIPI"));
}

/// Before files are read for tables that could not be filled.
void requireMunicipalities(const DirectoryLoadOptions& options) {
    if (options.isTrial) {
        throw loading::Failure("en la carpeta «" + options.folder +
                               "» no hay tablas; sin --simular se crean, o créelas con «ambcp crear»");
    }
    if (options.units.empty() && options.municipalities.empty()) {
        throw loading::Failure(
            "para llenar MUNICIPI hacen falta los nombres de los municipios: dé --unidades o --municipios");
    }
}

/// Municipality by municipality, as a difference.
void printMunicipalities(const LoadSummary& summary) {
    loading::CsvWriter csv(STDOUT_FILENO);
    for (const char* const name : {"COD_INE", "MUNICIPIO", "VIENEN", "SE_VAN", "CAMBIAN"}) {
        csv.field(name);
    }
    csv.endRecord();
    for (const auto& [place, municipality] : summary.byMunicipality) {
        csv.field(std::to_string(100000 + place).substr(1));
        csv.field(dbase::CodePage::windows1252().toUtf8(municipality.name));
        csv.field(std::to_string(municipality.comes));
        csv.field(std::to_string(municipality.goes));
        csv.field(std::to_string(municipality.changes));
        csv.endRecord();
    }
    csv.flush();
}

void warn(std::uint64_t count, const char* one, const char* many) {
    if (count > 0) {
        complain("aviso: " + counted(count, one, many));
    }
}

void printNotes(const EditionNotes& notes, const LoadSummary& summary) {
    for (const std::string& text : notes.badLines) {
        complain(text);
    }
    warn(notes.ofPseudoStreets, "tramo de una seudovía no se carga, porque no se da --seudovias",
         "tramos de seudovías no se cargan, porque no se da --seudovias");
    warn(notes.withoutMunicipality, "tramo no se carga, porque ningún fichero nombra su municipio",
         "tramos no se cargan, porque ningún fichero nombra su municipio");
    warn(notes.streetsWithoutName, "vía no está en el fichero de vías; lleva el nombre corto de sus tramos",
         "vías no están en el fichero de vías; llevan el nombre corto de sus tramos");
    warn(summary.shortenedNames, "fila lleva un nombre abreviado, que no cabía",
         "filas llevan un nombre abreviado, que no cabía");
    std::string unknown;
    for (const auto& [type, count] : summary.unknownTypes) {
        unknown += (unknown.empty() ? "" : ", ") + dbase::CodePage::windows1252().toUtf8(type) + " (" +
                   std::to_string(count) + ')';
    }
    if (!unknown.empty()) {
        complain("aviso: tipos de vía que no se conocen y quedan en blanco: " + unknown);
    }
}

void printTotals(const LoadSummary& summary) {
    if (summary.municipalities.comes > 0) {
        std::printf("MUNICIPI: %s.\n",
                    counted(summary.municipalities.comes, "fila cargada", "filas cargadas").c_str());
    }
    std::printf("POSTAL: %s; en %s se ha abierto algún extremo.\n",
                counted(summary.streets.comes, "fila cargada", "filas cargadas").c_str(),
                std::to_string(summary.openedRows).c_str());
    std::printf("Fuente: Instituto Nacional de Estadística.\n");
}

/// The line on the terminal for one task after another. Where the user wants to end, it ends the load.
class TaskLine {
public:
    void operator()(const LoadingStep& step) {
        if (Interruption::isRequested()) {
            throw Interrupted();
        }
        if (!line_ || step.task != task_) {
            line_.emplace(task_ = step.task);
        }
        line_->work(step.done, step.share);
    }

private:
    std::optional<ProgressLine> line_;
    std::string task_;
};

std::vector<unsigned> provincesOf(const DirectoryLoadOptions& options) {
    std::vector<unsigned> provinces;
    for (const std::string& code : options.provinces) {
        provinces.push_back(static_cast<unsigned>(std::stoul(code)));
    }
    return provinces;
}

/// One load, or its trial. Tables that are there are looked at before the files are read; missing ones are
/// created after that, so that files which cannot be used leave nothing.
class Load {
public:
    explicit Load(const DirectoryLoadOptions& options) : options_(options) {}

    void run() {
        TaskLine line;
        progress_ = [&](const LoadingStep& step) { line(step); };
        prepare();
        const RangeOpening opening = openingNamed(options_.opening);
        summary_ = options_.isTrial ? loading_->simulate(opening)
                                    : loading_->store(opening, {}, {.progress = progress_});
        if (created_) {
            created_->keep();
        }
    }

    void print() const {
        printNotes(loading_->edition().notes(), summary_);
        options_.isTrial ? printMunicipalities(summary_) : printTotals(summary_);
    }

private:
    [[nodiscard]] std::unique_ptr<Edition> read() const {
        return std::make_unique<Edition>(EditionFiles{options_.stretches, options_.streets,
                                                      options_.pseudoStreets, options_.units,
                                                      options_.municipalities, provincesOf(options_)},
                                         [this](const LoadingStep& step) { progress_(step); });
    }

    void prepare() {
        std::unique_ptr<Edition> edition;
        if (!hasTables(options_.folder)) {
            requireMunicipalities(options_);
            edition = read();
            created_.emplace(options_.folder);
        }
        const std::string folder = useFolder(options_.folder);
        for (const char* const table : {"MUNICIPI", "POSTAL", "TIPO_VIA"}) {
            requireWhole(requireTable(folder, table));
        }
        loading_ = std::make_unique<DirectoryLoading>(folderDatabase, folder);
        loading_->take(edition ? std::move(edition) : read());
    }

    const DirectoryLoadOptions& options_;
    LoadingProgress progress_;
    std::optional<CreatedTables> created_;
    std::unique_ptr<DirectoryLoading> loading_;
    LoadSummary summary_;
};

} // namespace

ExitCode callejeroCargar(const DirectoryLoadOptions& options) {
    const Interruption interruption;
    try {
        Load load(options);
        load.run();
        load.print();
        if (Interruption::isRequested()) {
            complain("la interrupción ha llegado cuando ya estaba hecho");
        }
    } catch (const Interrupted&) {
        complain("interrumpido; no se ha cambiado nada");
    }
    std::fflush(stdout);
    Interruption::obey();
    return ExitCode::done;
}

} // namespace ambcp
