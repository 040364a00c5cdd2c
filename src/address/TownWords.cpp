// Finding the municipality.
#include "address/TownWords.h"

#include <algorithm>
#include <optional>

#include "address/Provinces.h"

namespace ambrel {
namespace {

using suggest::AddressRole;
using Kind = AddressPiece::Kind;

constexpr std::size_t mostWordsOfTown = 5;
constexpr std::size_t mostTowns = 6;

/// Whether words may be a town's name: without figures, and not from the middle of another name.
bool mayBeTown(const WrittenWords& words, WordRange range) {
    const std::string& first = words[range.first].folded;
    const bool isInside = words[range.first].isSmall() &&
                          (first.starts_with('D') || first == "Y" || first == "I" || first == "EN");
    for (std::size_t i = range.first; i < range.last; ++i) {
        if (words[i].digits != 0) {
            return false;
        }
    }
    return !isInside && !words[range.last - 1].isSmall();
}

class TownReading {
public:
    TownReading(const WrittenWords& words, const std::vector<AddressPiece>& pieces, std::size_t streetPiece,
                const StreetWords& street)
        : words_(words), pieces_(pieces), streetPiece_(streetPiece), street_(street) {
        for (std::size_t i = 0; i < pieces.size(); ++i) {
            if (i == streetPiece) {
                if (!street.tail.isEmpty() && isName(street.tail)) {
                    places_.push_back({street.tail, i, true});
                }
            } else if (pieces[i].isName() ||
                       (i > 0 && pieces[i - 1].kind == Kind::Code && !hasStreetType(i))) {
                places_.push_back({pieces[i].words, i, false});
            }
            if (pieces[i].kind == Kind::Code) {
                code_ = i;
            }
        }
    }

    std::vector<StreetInTown> read() {
        const std::size_t town = likeliest();
        if (town < places_.size()) {
            readPlace(town);
            for (std::size_t i = places_.size(); i-- > 0 && towns_.size() < mostTowns;) {
                if (i != town && places_[i].words != towns_.front().province) {
                    add(places_[i].words, {});
                }
            }
        } else {
            readInsideStreet();
        }
        return std::move(towns_);
    }

private:
    struct Place {
        WordRange words;
        std::size_t piece;
        bool isTail;
    };

    bool isName(WordRange range) const {
        const WrittenType type = readWrittenType(words_, range.first, range.last);
        return type.kind != StreetKind::Estate && !words_[range.first].is(AddressRole::Building) &&
               !words_[range.first].is(AddressRole::Note);
    }

    bool hasStreetType(std::size_t piece) const {
        return pieces_[piece].kind == Kind::Street || pieces_[piece].kind == Kind::Inside ||
               pieces_[piece].kind == Kind::Aside || pieces_[piece].kind == Kind::Building;
    }

    /// The number of the place that is the town; their count if none is.
    std::size_t likeliest() const {
        if (code_) {
            for (std::size_t i = 0; i < places_.size(); ++i) {
                if (places_[i].piece == *code_ + 1 && !places_[i].isTail) {
                    return i;
                }
            }
            for (std::size_t i = places_.size(); i-- > 0;) {
                if (places_[i].piece + 1 == *code_) {
                    return beforeProvince(i);
                }
            }
        }
        if (places_.empty()) {
            return 0;
        }
        // After the street, otherwise before it.
        return beforeProvince(places_.size() - 1);
    }

    /// The place before one that is a province, if both stand on the same side of the street.
    std::size_t beforeProvince(std::size_t place) const {
        const bool isAlone =
            place == 0 || (places_[place - 1].piece < streetPiece_ && streetPiece_ < places_[place].piece);
        return !isAlone && isProvince(words_, places_[place].words) &&
                       !words_[places_[place - 1].words.first].follows(Separator::Open)
                   ? place - 1
                   : place;
    }

    void readPlace(std::size_t place) {
        const WordRange town = places_[place].words;
        if (place + 1 < places_.size() && places_[place + 1].piece > places_[place].piece &&
            isProvince(words_, places_[place + 1].words)) {
            add(town, places_[place + 1].words);
            if (!code_ && !words_[places_[place + 1].words.first].follows(Separator::Open)) {
                add(places_[place + 1].words, {}); // a quarter of the capital
            }
            return;
        }
        const std::size_t province = provinceAtEnd(words_, town);
        if (province > town.first && province < town.last && !words_[province - 1].isSmall()) {
            const bool isJoined =
                words_[province].follows(Separator::Hyphen) && !words_[province].follows(Separator::Blank);
            if (isJoined) {
                add(town, {}); // "Vélez-Málaga"
            }
            add({town.first, province}, {province, town.last});
            if (!isJoined) {
                add(town, {});
            }
        } else {
            add(town, {});
        }
        if (province == town.first && !code_) {
            add({}, town);
        }
        if (places_[place].isTail) {
            for (std::size_t count = 1; count < std::min(town.size(), mostWordsOfTown); ++count) {
                addIfTown({town.last - count, town.last});
            }
        }
    }

    /// No separator says where the town is: it may be the last words of the street or the first.
    void readInsideStreet() {
        if (streetPiece_ == pieces_.size()) {
            add({}, {});
            return;
        }
        const bool isAfterCode = code_ && *code_ + 1 == streetPiece_;
        const bool isBeforeCode = code_ && streetPiece_ + 1 == *code_;
        const bool hasNumber = street_.number.isThere() || !street_.floor.isEmpty();
        if (!isAfterCode && !isBeforeCode) {
            add({}, {});
        }
        if (isAfterCode || street_.type.isEmpty()) {
            readFirstWords();
        }
        if (!hasNumber && !isAfterCode) {
            readLastWords();
        }
        if (isAfterCode || isBeforeCode || towns_.empty()) {
            add({}, {});
        }
    }

    void readFirstWords() {
        const WordRange name = street_.name;
        const bool hasNumber = street_.number.isThere();
        for (std::size_t count = 1; count <= mostWordsOfTown && count + (hasNumber ? 1 : 0) <= name.size();
             ++count) {
            const std::size_t end = name.first + count;
            if (mayBeTown(words_, {name.first, end})) {
                add({name.first, end}, {});
                towns_.back().street.name.first = end;
            }
        }
    }

    void readLastWords() {
        const WordRange name = street_.name;
        for (std::size_t count = 1; count <= mostWordsOfTown && count < name.size(); ++count) {
            const std::size_t first = name.last - count;
            if (!words_[first - 1].isSmall() && mayBeTown(words_, {first, name.last})) {
                add({first, name.last}, {});
                towns_.back().street.name.last = first;
            }
        }
    }

    void addIfTown(WordRange range) {
        if (mayBeTown(words_, range)) {
            add(range, {});
        }
    }

    void add(WordRange municipality, WordRange province) {
        towns_.push_back({street_, municipality, province});
    }

    const WrittenWords& words_;
    const std::vector<AddressPiece>& pieces_;
    std::size_t streetPiece_;
    const StreetWords& street_;
    std::vector<Place> places_;
    std::optional<std::size_t> code_;
    std::vector<StreetInTown> towns_;
};

} // namespace

std::vector<StreetInTown> readTowns(const WrittenWords& words, const std::vector<AddressPiece>& pieces,
                                    std::size_t streetPiece, const StreetWords& street) {
    return TownReading(words, pieces, streetPiece, street).read();
}

} // namespace ambrel
