// Reading the codes of street types.
#include "suggest/StreetTypes.h"

#include "dbase/dataset/dataset.h"
#include "dbase/dataset/row_walk.h"
#include "dbase/system/error.h"
#include "suggest/Folding.h"
#include "suggest/Letters.h"

namespace ambrel::suggest {
namespace {

TypeSet typesIn(std::string_view name) {
    TypeSet types = 0;
    const std::vector<NameWord> words = foldName(name);
    for (std::size_t i = 0; i < words.size(); ++i) {
        const TypeSet both =
            i + 1 < words.size() ? WordLists::builtIn().typesOf(words[i].literal, words[i + 1].literal) : 0;
        if (both != 0) {
            types |= both;
            ++i;
        } else if (const WordEntry* entry = WordLists::builtIn().find(words[i].literal)) {
            types |= entry->types;
        }
    }
    return types;
}

} // namespace

void StreetTypes::prepare() {
    if (isRead_) {
        return;
    }
    try {
        dbase::Dataset table(database_, "TIPO_VIA");
        const dbase::Field& code = table.bindCharacter("CODIGO", 2);
        table.open();
        const dbase::Field* const names[] = {table.findField("NOMBRE"), table.findField("NOMBRE_CAT")};
        dbase::forEachRow(table, [&] {
            for (const dbase::Field* const name : names) {
                if (name != nullptr) {
                    codes_[code.text()] |= typesIn(name->view());
                }
            }
        });
        isRead_ = true;
    } catch (const dbase::Error&) {
        codes_.clear(); // types only order equal names, and the lists know the usual codes until the next try
    }
}

TypeSet StreetTypes::ofCode(std::string_view code) const {
    const auto known = codes_.find(code);
    return known != codes_.end() && known->second != 0 ? known->second
                                                       : WordLists::builtIn().typesOfCode(code);
}

TypeSet StreetTypes::ofText(std::string_view text) const {
    // "Cº" is how people shorten "Camino", whatever a table means by its code CO.
    const bool isShortened = text.find_first_of("\xAA\xBA") != std::string_view::npos;
    const TypeSet ofWords = typesIn(text);
    if (isShortened && ofWords != 0) {
        return ofWords;
    }
    return ofCode(foldLetters(text)) | ofWords; // "Pl." is a square, and may be the code of an estate
}

} // namespace ambrel::suggest
