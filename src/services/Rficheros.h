// Files and folders. Paths are UTF-8; either separator, / or \, may be used.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "AmbrelExport.h"

/// Joins directory and name with one separator. An empty directory gives the name alone.
[[nodiscard]] AMBREL_EXPORT std::string SlashSep(std::string_view directory, std::string_view name,
                                                 char separator);

/// Fills the list with the full paths of the entries of one folder whose name matches the last part of
/// `mask`, sorted by name: * stands for any characters, ? for one, letter case is ignored, "*.*" matches
/// every name. Folders are listed too, "." and ".." are not. `attributes` selects the special kinds (folder,
/// hidden) wanted besides plain files; 63 is everything. A folder that does not exist gives an empty list.
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
/// Attributes according to permissions and name. "." and ".." are folders and nothing else.
[[nodiscard]] AMBREL_EXPORT int attributesOnDisk(const std::string& path);
/// Replaces the function that all routines here ask; an empty one restores attributesOnDisk.
AMBREL_EXPORT void setAttributeFunction(AttributeFunction function);

/// Iterates over the entries of one folder: ".", "..", then the rest by name. Mask and attributes as in
/// FindFileNoRecursivo.
class AMBREL_EXPORT FileSearch {
public:
    /// An entry found.
    struct Entry {
        std::string name; // without folder
        int attributes = 0;
    };

    /// The folder is read by findFirst, not before.
    FileSearch(const std::string& mask, int attributes);

    /// Starts again from the first entry; null if nothing matches.
    [[nodiscard]] std::optional<Entry> findFirst();
    /// Null after the last entry, and before findFirst.
    [[nodiscard]] std::optional<Entry> findNext();
    /// The folder searched, with the system's separator; empty for the current one.
    [[nodiscard]] const std::string& folder() const { return folder_; }

private:
    std::string folder_, mask_;
    int attributes_;
    std::vector<Entry> entries_;
    std::size_t position_ = 0;
};

} // namespace ambrel
