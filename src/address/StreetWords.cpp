// Reading the words of a street.
#include "address/StreetWords.h"

#include <algorithm>
#include <array>
#include <optional>

namespace ambrel {
namespace {

using suggest::AddressRole;
using suggest::TypeSet;
using suggest::WordLists;

constexpr std::size_t mostReadings = 4;

TypeSet typesOf(std::initializer_list<std::string_view> words) {
    TypeSet types = 0;
    for (const std::string_view word : words) {
        if (const suggest::WordEntry* const entry = WordLists::builtIn().find(word)) {
            types |= entry->types;
        }
    }
    return types;
}

StreetKind kindOf(TypeSet types) {
    static const TypeSet streets = typesOf({"CALLE", "AVENIDA", "PLAZA", "PASEO", "CARRETERA", "CAMINO",
                                            "TRAVESIA", "GLORIETA", "PASAJE", "CALLEJON", "CALLEJA", "RAMBLA",
                                            "BULEVAR", "COSTANILLA", "PLAZUELA", "AUTOVIA", "SENDA"});
    static const TypeSet estates = typesOf({"URBANIZACION", "POLIGONO", "BARRIO", "COLONIA", "GRUPO", "LUGAR",
                                            "PARTIDA", "PARAJE", "DISEMINADO", "BLOQUE"});
    return (types & streets) != 0   ? StreetKind::Street
           : (types & estates) != 0 ? StreetKind::Estate
                                    : StreetKind::Other;
}

/// Whether the number at a word belongs to a road: "N-340", "CV 35".
bool isOfRoad(const WrittenWords& words, std::size_t at) {
    const WrittenWord& before = words[at - 1];
    const bool isJoined = words[at].follows(Separator::Hyphen) ||
                          (before.end == words[at].begin && !before.is(AddressRole::NumberMark));
    return before.digits == 0 && before.folded.size() <= 2 && isJoined;
}

/// Whether figures after a word count things, as in "los 25 años".
bool isPluralArticle(std::string_view word) {
    static constexpr std::array<std::string_view, 7> articles{"LOS", "LAS", "DEL", "ELS", "LES", "OS", "AS"};
    return std::ranges::find(articles, word) != articles.end();
}

/// How sure it is that a number is that of the house.
enum class Certainty { No, Doubtful, Likely, Sure };

Certainty certaintyOfNumber(const WrittenWords& words, std::size_t at, std::size_t last) {
    const WrittenWord& word = words[at];
    const bool isMarked = word.is(AddressRole::NumberMark) && at + 1 < last &&
                          (words[at + 1].digits != 0 || words[at + 1].is(AddressRole::NoNumber)) &&
                          !words[at + 1].follows(Separator::Hyphen);
    const bool isKilometre = word.is(AddressRole::Kilometre) && at + 1 < last && words[at + 1].digits != 0;
    if (isMarked || isKilometre || noNumberEnd(words, at, last) > at) {
        return Certainty::Sure;
    }
    if (!word.isHouseNumber() || isOfRoad(words, at)) {
        return Certainty::No;
    }
    const bool isInName = isDate(words, at, last) || isPluralArticle(words[at - 1].folded);
    return isInName ? Certainty::Doubtful : Certainty::Likely;
}

/// Whether "portal 3" and the like begin at a word.
bool beginsUnit(const WrittenWords& words, std::size_t at, std::size_t last) {
    return words[at].is(AddressRole::Unit) && at + 1 < last &&
           (words[at + 1].digits != 0 || words[at + 1].isLetter() ||
            words[at + 1].is(AddressRole::NumberMark));
}

class StreetReading {
public:
    StreetReading(const WrittenWords& words, WordRange piece) : words_(words), piece_(piece) {}

    std::vector<StreetWords> read() {
        const WrittenType type = readWrittenType(words_, piece_.first, piece_.last);
        const bool isNamed = type.kind != StreetKind::None && type.end < piece_.last;
        if (isNamed && isNumberNext(type.end)) {
            readNamedByType(type);
        }
        const WordRange typeWords = isNamed ? WordRange{piece_.first, type.end} : WordRange{};
        const std::size_t first = isNamed ? type.end : piece_.first;
        readFrom(typeWords, first);
        if (endsInUnitOfCode(first)) {
            addAfter(typeWords, first, piece_.last - 1);
        }
        return std::move(readings_);
    }

private:
    /// "Calle Sol local 28009 Madrid", where only the code makes the last word look like one of the name's.
    bool endsInUnitOfCode(std::size_t first) const {
        const std::size_t unit = piece_.last - 1;
        const bool isBeforeCode = piece_.last < words_.size() && words_[piece_.last].digits == 5 &&
                                  !words_[piece_.last].follows(Separator::Apart);
        return isBeforeCode && unit > first && words_[unit].is(AddressRole::Unit) &&
               !words_[unit - 1].isSmall() && !readings_.front().number.isThere() &&
               readings_.front().floor.isEmpty();
    }

    bool isNumberNext(std::size_t at) const {
        if (words_[at].folded == "N") {
            return false; // of a road
        }
        return certaintyOfNumber(words_, at, piece_.last) >= Certainty::Likely ||
               (words_[at].digits != 0 && at + 1 == piece_.last);
    }

    /// "Plaza 5", "Gran Vía 28": the word for the type is the name. "Calle 30" is one, though.
    void readNamedByType(const WrittenType& type) {
        static const TypeSet calle = typesOf({"CALLE"});
        if ((calle & type.types) == 0) {
            add({}, {piece_.first, type.end}, type.end);
        }
    }

    void readFrom(WordRange type, std::size_t first) {
        // The places where the name may end, by how sure they are.
        std::optional<std::size_t> sure, unit;
        std::vector<std::size_t> likely, doubtful;
        const bool isMark = words_[first].is(AddressRole::NumberMark); // "N 340", of a road
        for (std::size_t at = first + (isMark ? 2 : 1);
             at < piece_.last && !sure && likely.size() < mostReadings; ++at) {
            switch (certaintyOfNumber(words_, at, piece_.last)) {
            case Certainty::Sure:
                sure = at;
                break;
            case Certainty::Likely:
                likely.push_back(at);
                at = readNumber(words_, at, piece_.last).words.last - 1;
                break;
            case Certainty::Doubtful:
                doubtful.push_back(at);
                break;
            case Certainty::No:
                if (!unit && likely.empty() && beginsUnit(words_, at, piece_.last)) {
                    unit = at++;
                }
                break;
            }
        }
        const bool isUnitFirst = unit && (likely.empty() || *unit < likely.front());
        if (sure && (likely.empty() || !isDoorAfter(likely.front(), *sure))) {
            addAfter(type, first, *sure);
        }
        if (isUnitFirst) {
            addAfter(type, first, *unit);
        }
        for (const std::size_t at : likely) {
            addAfter(type, first, at);
        }
        if (readings_.empty() || (likely.size() == 1 && isPlainEnd(likely.front()))) {
            addAfter(type, first, piece_.last);
        }
        for (const std::size_t at : doubtful) {
            addAfter(type, first, at);
        }
    }

    /// Whether the marked number is that of a door, as in "Mayor 5 puerta nº 3".
    bool isDoorAfter(std::size_t number, std::size_t marked) const {
        return marked > number + 1 && words_[marked - 1].is(AddressRole::Unit);
    }

    /// Whether figures end the piece: they may be the name's.
    bool isPlainEnd(std::size_t at) const {
        return at + 1 == piece_.last && words_[at].digits == words_[at].folded.size();
    }

    /// "Nagusia kalea 5": the type after the name.
    void addAfter(WordRange type, std::size_t first, std::size_t end) {
        if (type.isEmpty() && end > first + 1) {
            const WrittenType after = readWrittenType(words_, end - 1, end);
            if (after.kind == StreetKind::Street && !words_[end - 2].isSmall()) {
                add({end - 1, end}, {first, end - 1}, end);
            }
        }
        add(type, {first, end}, end);
    }

    void add(WordRange type, WordRange name, std::size_t end) {
        if (readings_.size() == mostReadings) {
            return;
        }
        StreetWords& street = readings_.emplace_back();
        street.type = type;
        street.name = name;
        if (end < piece_.last) {
            street.number = readNumber(words_, end, piece_.last);
        }
        const std::size_t floor = street.number.isThere() ? street.number.words.last : end;
        street.floor = {floor, floorEnd(words_, floor, piece_.last)};
        street.tail = {street.floor.last, piece_.last};
    }

    const WrittenWords& words_;
    WordRange piece_;
    std::vector<StreetWords> readings_;
};

} // namespace

WrittenType readWrittenType(const WrittenWords& words, std::size_t at, std::size_t last) {
    if (at >= last || words[at].entry == nullptr) {
        return {};
    }
    const suggest::WordEntry& entry = *words[at].entry;
    if (entry.beginsPair && at + 1 < last && !words[at + 1].follows(Separator::Apart)) {
        if (const TypeSet types = WordLists::builtIn().typesOf(words[at].folded, words[at + 1].folded)) {
            // "Kale Nagusia 5": the second word is the name.
            const bool isName = (at + 2 == last || words[at + 2].isHouseNumber()) && entry.types != 0 &&
                                kindOf(entry.types) == StreetKind::Street;
            if (!isName) {
                return {kindOf(types), at + 2, types};
            }
        }
    }
    return entry.types == 0 ? WrittenType{} : WrittenType{kindOf(entry.types), at + 1, entry.types};
}

std::vector<StreetWords> readStreetWords(const WrittenWords& words, WordRange piece) {
    return StreetReading(words, piece).read();
}

} // namespace ambrel
