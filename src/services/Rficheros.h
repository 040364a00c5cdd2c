// Files and folders. Paths are UTF-8 and may have either separator, / or \.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "AmbrelExport.h"

/// Directory and name with the separator between them, not doubled. An empty directory gives the name alone.
[[nodiscard]] AMBREL_EXPORT std::string SlashSep(std::string_view directory, std::string_view name,
                                                 char separator);

/// Fills the list with the full paths of the entries of one folder whose name matches the last part of
/// `mask`, sorted by name: * and ? stand for other characters, letter case counts for nothing, "*.*" matches
/// every name. Folders are listed too, "." and ".." are not. `attributes` says which special kinds (folder,
/// hidden) are wanted beside plain files; 63 is everything. A folder that is not there gives an empty list.
AMBREL_EXPORT void FindFileNoRecursivo(const std::string& mask, int attributes,
                                       std::vector<std::string>& list);

namespace ambrel {

namespace file_attribute {
inline constexpr int readOnly = 1; // no write permission for the owner
inline constexpr int hidden = 2;   // the name begins with a dot
inline constexpr int folder = 16;
inline constexpr int any = 63;
} // namespace file_attribute

/// The path with the system's own separator.
[[nodiscard]] AMBREL_EXPORT std::string nativePath(std::string_view path);

/// Attributes of a file or folder, a sum of file_attribute values.
using AttributeFunction = std::function<int(const std::string& path)>;
/// What the permissions and the name say. "." and ".." are folders and nothing else.
[[nodiscard]] AMBREL_EXPORT int attributesOnDisk(const std::string& path);
/// Replaces the function that all routines here ask; an empty one brings attributesOnDisk back.
AMBREL_EXPORT void setAttributeFunction(AttributeFunction function);

/// The entries of one folder, one after the other: ".", "..", then the rest by name. Mask and attributes as
/// in FindFileNoRecursivo.
class AMBREL_EXPORT FileSearch {
public:
    /// What was found.
    struct Entry {
        std::string name; // without folder
        int attributes = 0;
    };

    /// Reads the folder at findFirst, not before.
    FileSearch(const std::string& mask, int attributes);

    /// Begins anew; null when nothing matches.
    [[nodiscard]] std::optional<Entry> findFirst();
    /// Null behind the last entry, and before findFirst.
    [[nodiscard]] std::optional<Entry> findNext();
    /// The folder that is searched, as the system writes it; empty for the current one.
    [[nodiscard]] const std::string& folder() const { return folder_; }

private:
    std::string folder_, mask_;
    int attributes_;
    std::vector<Entry> entries_;
    std::size_t position_ = 0;
};

} // namespace ambrel
