// Writes the results of a load of the official directory.
#include "tools/directory_output.h"

#include <array>
#include <cstdio>
#include <string_view>

#include <unistd.h>

#include "dbase/system/counted.h"
#include "directory/EditionWarnings.h"
#include "directory/LeadingZeros.h"
#include "loading/ansi_text.h"
#include "loading/csv.h"
#include "report/WholeFile.h"
#include "tools/complain.h"
#include "tools/csv_lines.h"

namespace ambcp {

namespace {

using ambrel::directory::ChangeCounts;
using ambrel::directory::DirectoryConflict;
using ambrel::directory::EditionNotes;
using ambrel::directory::LoadSummary;
using ambrel::directory::PlaceCode;
using dbase::counted;
using loading::utf8FromAnsi;

std::string codeText(PlaceCode place) { return ambrel::directory::digits(place, 5); }

std::string describe(const ChangeCounts& counts) {
    return counted(counts.comes, "fila nueva", "filas nuevas") + ", " +
           counted(counts.goes, "quitada", "quitadas") + " y " +
           counted(counts.changes, "cambiada", "cambiadas");
}

/// In the order of ConflictKind.
constexpr std::array<std::string_view, 4> conflictNames{"CAMBIADA", "BORRADA", "VIA_PROPIA",
                                                        "MUNICIPIO_PROPIO"};

} // namespace

void printMunicipalities(const LoadSummary& summary) {
    loading::CsvWriter csv(STDOUT_FILENO);
    for (const char* const name : {"COD_INE", "MUNICIPIO", "VIENEN", "SE_VAN", "CAMBIAN", "CONFLICTOS"}) {
        csv.field(name);
    }
    csv.endRecord();
    for (const auto& [place, one] : summary.byMunicipality) {
        csv.field(codeText(place));
        csv.field(utf8FromAnsi(one.name));
        for (const std::uint64_t count : {one.comes, one.goes, one.changes, one.conflicts}) {
            csv.field(std::to_string(count));
        }
        csv.endRecord();
    }
    csv.flush();
}

void printTotals(const LoadSummary& summary) {
    std::printf("MUNICIPI: %s.\n", describe(summary.municipalities).c_str());
    std::printf("POSTAL: %s", describe(summary.streets).c_str());
    if (summary.streets.changes > 0) {
        std::printf(" (%s de nombre, %s de código, %s de números)", std::to_string(summary.renamed).c_str(),
                    std::to_string(summary.otherCode).c_str(), std::to_string(summary.otherRange).c_str());
    }
    std::printf(".\nEdición: %s, y %s con algún extremo abierto.\n",
                counted(summary.streetRows, "fila", "filas").c_str(),
                std::to_string(summary.openedRows).c_str());
    std::printf("Fuente: Instituto Nacional de Estadística.\n");
}

void tellNotes(const EditionNotes& notes, const LoadSummary& summary) {
    for (const std::string& text : notes.badLines) {
        complain(text);
    }
    for (const std::string& text : ambrel::directory::warningsOf(notes, summary)) {
        complain("aviso: " + text);
    }
    if (summary.conflicts > 0) {
        complain("aviso: " + counted(summary.conflicts,
                                     "conflicto: queda lo que había; --conflictos dice cuál es",
                                     "conflictos: queda lo que había; --conflictos dice cuáles son"));
    }
}

ConflictList::ConflictList() {
    addCsvRow(text_, {"CLASE", "COD_INE", "MUNICIPIO", "CLAVE", "VIA", "QUEDA", "OFICIAL"});
}

void ConflictList::add(const DirectoryConflict& conflict) {
    addCsvRow(text_,
              {conflictNames.at(static_cast<std::size_t>(conflict.kind)), codeText(conflict.place),
               utf8FromAnsi(conflict.municipality),
               conflict.key == 0 ? "" : ambrel::directory::digits(conflict.key, 8),
               utf8FromAnsi(conflict.name), utf8FromAnsi(conflict.ours), utf8FromAnsi(conflict.official)});
}

void ConflictList::write(const std::string& file) const { report::writeWholeFile(file, text_); }

} // namespace ambcp
