// The contents of the simulated service: provinces, their municipalities and their streets.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tools/callejero/Answers.h"

namespace callejero {

/// Returns whole answers, errors of the service included ("LA PROVINCIA NO EXISTE"). Names are UTF-8 and must
/// match exactly. Called from several threads at once.
class Directory {
public:
    virtual ~Directory() = default;

    [[nodiscard]] virtual std::string provinces() const = 0;
    [[nodiscard]] virtual std::string municipalities(const std::string& province) const = 0;
    [[nodiscard]] virtual std::string streets(const std::string& province,
                                              const std::string& municipality) const = 0;
};

/// A directory of the given provinces, in this order.
[[nodiscard]] std::unique_ptr<const Directory> listedDirectory(std::vector<Province> provinces);

/// The places of the built-in sample, named in the cadastre's form. The streets of the sample come first;
/// every municipality has a few dozen more that the sample lacks.
[[nodiscard]] std::unique_ptr<const Directory> sampleDirectory();
[[nodiscard]] std::vector<Province> sampleProvinces();

/// The answers kept in a folder, sent unchanged. Two layouts:
///
///     PROVINCE/MUNICIPALITY.xml           streets; "/" of a name is written "()" and "\" is ")("
///     PROVINCE/municipios.xml             optional: else the names of the files are listed
///     provincias.xml                      optional: else the names of the folders are listed
///
/// which is what an import of whole provinces leaves in POSTALES, and
///
///     soap/provincias.xml, soap/municipios-PP.xml (PP: the province's code, two digits)
///     vias/indice.csv                     with the columns fichero, provincia, municipio
///     vias/FICHERO
///
/// Errors: std::runtime_error (Spanish) for a folder that is not there or cannot be read.
[[nodiscard]] std::unique_ptr<const Directory> folderDirectory(const std::string& folder);

} // namespace callejero
