// Looks keys up in the table of provenance.
#include "directory/audit/OfficialRows.h"

#include "dbase/system/databases.h"

namespace ambrel::directory {

std::string OfficialRows::streetOf(std::string_view key) {
    constexpr std::size_t streetWidth = 11; // of CLAVE: municipality, V or P, and street
    if (!isOpened_) {
        isOpened_ = true;
        if (dbase::findTableFile(dbase::databaseFolder(database_), "PROCEDEN")) {
            rows_ = std::make_unique<dbase::Dataset>(database_, "PROCEDEN", "CODIGO1");
            rows_->open();
        }
    }
    if (!rows_ || key.empty() || !rows_->seek({{"CODIGO1", std::string(key)}}, dbase::SeekMode::Exact)) {
        return {};
    }
    return rows_->field("CLAVE").text().substr(0, streetWidth);
}

} // namespace ambrel::directory
