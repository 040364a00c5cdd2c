// Looking whole names up in PROCEDEN.
#include "address/ShortenedNames.h"

#include "data/TableDefinitions.h"
#include "dbase/dataset/row_walk.h"
#include "dbase/system/databases.h"
#include "suggest/Abbreviation.h"

namespace ambrel {

namespace {

/// What may follow it instead of the name's own end: a bracket closed or left out, and the number that tells
/// two names apart whose beginnings are the same.
constexpr std::size_t longestEnding = 13;

} // namespace

void ShortenedNames::open() {
    isOpened_ = true;
    if (!dbase::findTableFile(dbase::databaseFolder(database_), "PROCEDEN")) {
        return; // nothing was loaded from the official directory
    }
    table_.emplace(database_, "PROCEDEN", "CODIGO1");
    table_->open();
    key_ = table_->findField("CODIGO1");
    isShortened_ = table_->findField("ABREVIADO");
    name_ = table_->findField("NOMBRE"); // earlier versions lack it
    if (key_ == nullptr || isShortened_ == nullptr || name_ == nullptr) {
        table_.reset();
    }
}

bool ShortenedNames::isFrom(std::string_view key, std::string_view name) {
    if (!isOpened_) {
        open();
    }
    if (!table_ || key.empty() || !table_->seek({{"CODIGO1", std::string(key)}}, dbase::SeekMode::Exact)) {
        return false;
    }
    const auto hasKey = [&] { return key_->view() == key; };
    const auto hasName = [&] { return isShortened_->logical() && name_->view() == name; };
    return dbase::walkTo(*table_, hasKey, hasName);
}

std::string beginningOfShortened(std::string_view name) {
    const std::string text = suggest::abbreviated(name, streetNameWidth);
    const std::string_view beginning = std::string_view(text).substr(0, streetNameWidth - longestEnding);
    return std::string(beginning.substr(0, beginning.find_last_not_of(' ') + 1));
}

} // namespace ambrel
