// The folder for answers of the street-directory service and municipality files: POSTALES below a database's
// folder, with a folder for each province inside.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

namespace ambrel {

class DirectoryDocument;

/// UTF-8 paths and names. The folder need not exist.
[[nodiscard]] std::string postalesFolder(const std::string& database);

/// The files of a municipality with several postal codes, by name before ".dat", whose letter case is
/// ignored: more than one only on a disk where that distinguishes names. Full paths, in UTF-8.
[[nodiscard]] std::vector<std::string> municipalityFiles(const std::string& database, const std::string& key);

/// "X/Y" is filed as "X()Y", "X\Y" as "X)(Y"; without extension.
[[nodiscard]] std::string filedName(const std::string& municipality);
/// The municipality of a file: its name up to the first dot, with those replacements undone.
[[nodiscard]] std::string municipalityOfFile(const std::string& path);

/// The folder for a province's answers, given its name in UTF-8; it need not exist. Empty for a name that
/// would lead out of POSTALES.
[[nodiscard]] std::string provinceFolder(const std::string& database, const std::string& province);

/// Thrown if an answer could not be written into its folder. The text is Spanish, UTF-8.
class FilingError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Files an answer as PROVINCE/MUNICIPALITY.xml (names in UTF-8), creating the folders. Deliberate: gives no
/// message if a folder cannot be created or an old file cannot be removed; false then. A name that would lead
/// out of its folder counts as one that cannot be created. Errors: FilingError.
bool fileAnswer(const DirectoryDocument& answer, const std::string& database, const std::string& province,
                const std::string& municipality);

/// TempCalles.XML in the program's folder, or in the user's cache folder if that is not writable.
[[nodiscard]] std::string scratchFile();

} // namespace ambrel
