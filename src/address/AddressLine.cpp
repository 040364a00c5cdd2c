// Composing the readings of a written address.
#include "address/AddressLine.h"

#include <algorithm>
#include <string>

#include "address/AddressPieces.h"
#include "address/NumberWords.h"
#include "address/Provinces.h"
#include "address/StreetWords.h"
#include "address/TownWords.h"
#include "address/WrittenWords.h"

namespace ambrel {
namespace {

using suggest::AddressRole;
using Kind = AddressPiece::Kind;

constexpr std::size_t mostReadings = 12;

/// What a word is used for in a reading. Words that nothing uses make its rest.
enum class Use : char { Rest, Dropped, Type, Street, Number, Floor, Code, Municipality, Province };

/// One reading in the making.
class Draft {
public:
    explicit Draft(const WrittenWords& words) : words_(words), uses_(words.size(), Use::Rest) {}

    void use(WordRange range, Use what) {
        for (std::size_t i = range.first; i < range.last; ++i) {
            uses_[i] = what;
        }
    }

    void useNumber(const WrittenNumber& number) {
        if (number.isThere()) {
            use(number.words, Use::Number);
            number_ = number;
        }
    }

    void useStreet(const StreetWords& street) {
        use(street.type, Use::Type);
        use(street.name, Use::Street);
        useNumber(street.number);
        use(street.floor, Use::Floor);
    }

    /// A number, a floor or a door between separators.
    void useInside(WordRange piece) {
        if (!number_.isThere()) {
            useNumber(readNumber(words_, piece.first, piece.last));
            piece.first = number_.isThere() ? number_.words.last : piece.first;
        } else if (number_.suffix.empty() && words_[piece.first].is(AddressRole::Suffix)) { // "5, bis"
            number_.suffix = words_[piece.first].folded;
            use({piece.first, piece.first + 1}, Use::Number);
            ++piece.first;
        }
        use(piece, Use::Floor);
    }

    void writeTo(AddressParts& parts) const {
        parts.number = number_.number;
        parts.numberSuffix = number_.suffix;
        parts.numberEnd = number_.end;
        for (std::size_t first = 0; first < uses_.size();) {
            std::size_t last = first + 1;
            while (last < uses_.size() && uses_[last] == uses_[first]) {
                ++last;
            }
            write(parts, {first, last});
            first = last;
        }
    }

private:
    void write(AddressParts& parts, WordRange range) const {
        switch (uses_[range.first]) {
        case Use::Type:
            append(parts.type, words_.textWithStop(range));
            break;
        case Use::Street:
            writeStreet(parts.street, range);
            break;
        case Use::Floor:
            append(parts.floor, words_.textWithStop(range));
            break;
        case Use::Code:
            append(parts.postalCode, words_[range.first].folded);
            break;
        case Use::Municipality:
            append(parts.municipality, words_.text(range));
            break;
        case Use::Province:
            append(parts.province, words_.text(range));
            break;
        case Use::Rest:
            append(parts.rest, words_.textWithStop(range));
            break;
        case Use::Number:
        case Use::Dropped:
            break;
        }
    }

    /// "ALCALA (CALLE DE)" is spoken "DE ALCALA".
    static void writeStreet(std::string& street, std::string_view text, bool isArticle) {
        if (street.empty() || !isArticle) {
            append(street, text);
        } else {
            street.insert(0, std::string(text) + ' ');
        }
    }
    void writeStreet(std::string& street, WordRange range) const {
        bool isArticle = true;
        for (std::size_t i = range.first; i < range.last; ++i) {
            isArticle = isArticle && words_[i].isSmall();
        }
        writeStreet(street, words_.text(range), isArticle);
    }

    static void append(std::string& text, std::string_view more) {
        if (!text.empty()) {
            text += ", ";
        }
        text += more;
    }

    const WrittenWords& words_;
    std::vector<Use> uses_;
    WrittenNumber number_;
};

/// Reads a text that has been cut into pieces.
class TextReading {
public:
    TextReading(std::string_view text, bool hasTown)
        : words_(text), hasTown_(hasTown), code_(hasTown ? findPostalCode(words_) : PostalCodeWords{}),
          pieces_(cutIntoPieces(words_, code_, hasTown)) {}

    std::vector<AddressParts> read() {
        street_ = streetPiece();
        const std::vector<StreetWords> streets = streetReadings();
        if (!hasTown_) {
            for (const StreetWords& street : streets) {
                add(street, {}, {});
            }
            return std::move(readings_);
        }
        std::vector<std::vector<StreetInTown>> all;
        for (const StreetWords& street : streets) {
            all.push_back(readTowns(words_, pieces_, street_, street));
        }
        // The likeliest of each first, then the others of each.
        for (std::size_t depth = 0; depth < mostReadings; ++depth) {
            for (const auto& towns : all) {
                if (depth < towns.size()) {
                    add(towns[depth].street, towns[depth].municipality, towns[depth].province);
                }
            }
        }
        if (code_.words.isEmpty()) {
            addTownAlone();
        }
        return std::move(readings_);
    }

private:
    /// How much a piece looks like the one with the street.
    int rank(std::size_t piece) const {
        switch (pieces_[piece].kind) {
        case Kind::Street:
            return 6;
        case Kind::Numbered:
            return 5;
        case Kind::Other:
            return pieces_[piece].isNumbered ? 5 : isTown(piece) ? 0 : 2;
        case Kind::Estate:
            return 3;
        case Kind::Text:
            return hasNumberAfter(piece) ? 4 : isTown(piece) || isProvinceOfTown(piece) ? 0 : 1;
        case Kind::Building:
            return 1;
        default:
            return 0;
        }
    }

    bool hasNumberAfter(std::size_t piece) const {
        std::size_t next = piece + 1;
        if (next < pieces_.size() && pieces_[next].kind == Kind::Type) {
            ++next;
        }
        return next < pieces_.size() && pieces_[next].kind == Kind::Inside &&
               readNumber(words_, pieces_[next].words.first, pieces_[next].words.last).isThere();
    }

    /// Whether a name without a number must be the town's: beside the postal code, with no other name left.
    bool isTown(std::size_t piece) const {
        if (!hasTown_ || code_.words.isEmpty()) {
            return false;
        }
        const bool isAfter = piece > 0 && pieces_[piece - 1].kind == Kind::Code;
        if (isAfter) {
            return true;
        }
        const bool isBefore = piece + 1 < pieces_.size() && pieces_[piece + 1].kind == Kind::Code;
        return isBefore &&
               (piece == 0 ||
                std::ranges::none_of(pieces_.begin(), pieces_.begin() + static_cast<std::ptrdiff_t>(piece),
                                     [](const AddressPiece& one) { return one.isName(); })) &&
               (piece + 2 >= pieces_.size() || !pieces_[piece + 2].isName());
    }

    /// "28801 Alcalá de Henares (Madrid)"
    bool isProvinceOfTown(std::size_t piece) const {
        return piece > 0 && !code_.words.isEmpty() && isTown(piece - 1) &&
               isProvince(words_, pieces_[piece].words);
    }

    std::size_t streetPiece() const {
        std::size_t best = pieces_.size();
        int bestRank = 0;
        for (std::size_t i = 0; i < pieces_.size(); ++i) {
            if (const int one = rank(i); one > bestRank) {
                best = i;
                bestRank = one;
            }
        }
        return best;
    }

    std::vector<StreetWords> streetReadings() const {
        if (street_ == pieces_.size()) {
            return {StreetWords{}};
        }
        std::vector<StreetWords> readings = readStreetWords(words_, pieces_[street_].words);
        const bool isPlain = readings.front().number.words.last == pieces_[street_].words.last;
        if (isPlain && street_ + 1 < pieces_.size() && pieces_[street_ + 1].kind == Kind::Inside) {
            // "Alfonso 13, 5": the first number may be the name's.
            const WordRange next = pieces_[street_ + 1].words;
            StreetWords other = readings.front();
            other.name.last = other.number.words.last;
            other.number = readNumber(words_, next.first, next.last);
            const bool isMarked = words_[next.first].is(AddressRole::NumberMark);
            if (other.number.isThere() && readings.front().number.isThere()) {
                readings.insert(readings.begin() + (isMarked ? 0 : 1), std::move(other));
            }
        }
        return readings;
    }

    void add(const StreetWords& street, WordRange municipality, WordRange province) {
        Draft draft(words_);
        draft.useStreet(street);
        draft.use(municipality, Use::Municipality);
        draft.use(province, Use::Province);
        useOthers(draft, street);
        addOnce(draft);
    }

    void addOnce(const Draft& draft) {
        if (readings_.size() == mostReadings) {
            return;
        }
        draft.writeTo(readings_.emplace_back());
        if (std::find(readings_.begin(), readings_.end() - 1, readings_.back()) != readings_.end() - 1) {
            readings_.pop_back();
        }
    }

    /// The pieces beside street and town.
    void useOthers(Draft& draft, const StreetWords& street) const {
        for (std::size_t i = 0; i < pieces_.size(); ++i) {
            const AddressPiece& piece = pieces_[i];
            if (piece.kind == Kind::Code) {
                draft.use({piece.words.first, code_.code}, Use::Dropped);
                draft.use({code_.code, code_.code + 1}, Use::Code);
            } else if (piece.kind == Kind::Inside) {
                const WrittenNumber& number = street.number;
                const bool isNumber = number.isThere() && number.words.first == piece.words.first;
                if (isNumber) {
                    draft.use({number.words.last, piece.words.last}, Use::Floor);
                } else {
                    draft.useInside(piece.words);
                }
            } else if (piece.kind == Kind::Type && i == street_ + 1 && street.type.isEmpty()) {
                const WrittenType type = readWrittenType(words_, piece.words.first, piece.words.last);
                draft.use({piece.words.first, type.end}, Use::Type);
                draft.use({type.end, piece.words.last}, Use::Street);
            }
        }
    }

    /// A name and nothing else may be the town's, and a province may follow.
    void addTownAlone() {
        const bool hasProvince = pieces_.size() == 2 && isProvince(words_, pieces_[1].words);
        if (pieces_.empty() || !pieces_[0].isName() || (pieces_.size() > 1 && !hasProvince)) {
            return;
        }
        Draft draft(words_);
        draft.use(pieces_[0].words, Use::Municipality);
        if (hasProvince) {
            draft.use(pieces_[1].words, Use::Province);
        }
        addOnce(draft);
    }

    WrittenWords words_;
    bool hasTown_;
    PostalCodeWords code_;
    std::vector<AddressPiece> pieces_;
    std::size_t street_ = 0;
    std::vector<AddressParts> readings_;
};

} // namespace

std::vector<AddressParts> readAddressLine(std::string_view line) { return TextReading(line, true).read(); }

std::vector<AddressParts> readStreetText(std::string_view text) { return TextReading(text, false).read(); }

AddressParts readNumberText(std::string_view text) {
    const WrittenWords words(text);
    const WrittenNumber number = readNumber(words, 0, words.size());
    const std::size_t floor = number.isThere() ? number.words.last : 0;
    Draft draft(words);
    draft.useNumber(number);
    draft.use({floor, floorEnd(words, floor, words.size())}, Use::Floor);
    AddressParts parts;
    draft.writeTo(parts);
    return parts;
}

} // namespace ambrel
