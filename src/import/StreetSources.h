// The sources of streets that the import dialog offers.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "import/StreetSource.h"

namespace ambrel {

class DirectoryClient;
class ImportMessages;

/// What a source works with; it refers to all of them.
struct SourceTools {
    std::string database; // its folder contains POSTALES
    ImportMessages& messages;
    DirectoryClient& directory;
};

/// The sources in the order of their options; the first one is chosen when the dialog opens.
[[nodiscard]] std::vector<std::unique_ptr<StreetSource>> streetSources(const SourceTools& tools);

} // namespace ambrel
