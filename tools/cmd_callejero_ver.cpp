// ambcp callejero ver: what is in files of the official street directory.

#include <cstdio>

#include "dbase/system/counted.h"
#include "directory/FileOverview.h"
#include "tools/commands.h"
#include "tools/progress.h"

namespace ambcp {

namespace {

using ambrel::directory::FileKind;
using ambrel::directory::FileOverview;
using ambrel::directory::Numbering;
using ambrel::directory::OfficialFile;
using dbase::counted;

void printLine(const std::string& text) { std::printf("  %s\n", text.c_str()); }

std::string editionOf(const OfficialFile& file, const FileOverview& overview) {
    if (!file.edition.empty()) {
        return "datos a " + file.edition;
    }
    return "edición desconocida" +
           (overview.latestChange.empty() ? std::string() : ", último cambio " + overview.latestChange);
}

std::string provincesOf(const FileOverview& overview) {
    std::string text;
    for (const auto& [province, lines] : overview.provinces) {
        const std::string code = std::to_string(province);
        text += (text.empty() ? "" : " ") + std::string(code.size() < 2 ? "0" : "") + code;
    }
    return counted(overview.provinces.size(), "provincia", "provincias") + (text.empty() ? "" : ": " + text);
}

void printStretches(const FileOverview& overview) {
    const auto number = [&](Numbering numbering) {
        return overview.byNumbering[static_cast<std::size_t>(numbering)];
    };
    printLine(counted(number(Numbering::Odd), "tramo de impares, ", "tramos de impares, ") +
              counted(number(Numbering::Even), "de pares, ", "de pares, ") +
              std::to_string(number(Numbering::None)) + " sin números");
    printLine(counted(overview.ofPseudoStreets, "tramo es de una seudovía", "tramos son de seudovías") +
              "; " +
              counted(overview.withForeignCode, "tiene el código postal de otra provincia",
                      "tienen el código postal de otra provincia"));
}

/// Whether the file is one of the directory and is understood.
bool print(const OfficialFile& file) {
    FileOverview overview;
    {
        ProgressLine line(file.baseName);
        overview = overviewOf(file, [&](std::uint64_t lines, std::uint64_t bytes) {
            line.work(lines, static_cast<double>(bytes) / static_cast<double>(file.size));
        });
    }
    std::printf("%s\n", file.name.c_str());
    if (!overview.layout) {
        printLine("no tiene la forma de ningún fichero del callejero");
        return false;
    }
    printLine(std::string(kindName(overview.layout->kind)) + ", " + editionOf(file, overview) + ": " +
              counted(overview.counts.lines, "línea", "líneas"));
    printLine(provincesOf(overview));
    if (overview.layout->kind == FileKind::Stretches) {
        printStretches(overview);
    }
    if (overview.counts.badCount > 0) {
        printLine(counted(overview.counts.badCount, "línea no se entiende:", "líneas no se entienden:"));
        std::printf("%s\n", badLinesText(file, overview.counts).c_str());
    }
    return !overview.counts.hasTooManyBad();
}

} // namespace

ExitCode callejeroVer(const OverviewOptions& options) {
    bool isSound = true;
    for (const std::string& path : options.files) {
        for (const OfficialFile& file : ambrel::directory::officialFiles(path)) {
            isSound = print(file) && isSound;
        }
    }
    return isSound ? ExitCode::done : ExitCode::negative;
}

} // namespace ambcp
