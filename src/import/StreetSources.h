// The sources of streets that the import dialog offers.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "import/StreetSource.h"

namespace ambrel {

class DirectoryClient;
class ImportMessages;

/// What a source is made with; it refers to all of them.
struct SourceTools {
    std::string database; // whose folder has POSTALES
    ImportMessages& messages;
    DirectoryClient& directory;
};

/// One for each option, in their order; the first one is chosen when the dialog opens.
[[nodiscard]] std::vector<std::unique_ptr<StreetSource>> streetSources(const SourceTools& tools);

} // namespace ambrel
