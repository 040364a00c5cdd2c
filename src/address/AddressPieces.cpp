// Cutting an address into pieces.
#include "address/AddressPieces.h"

#include <algorithm>

namespace ambrel {
namespace {

using suggest::AddressRole;
using Kind = AddressPiece::Kind;

bool isCodeText(const WrittenWord& word) {
    if (word.digits != 5 || word.folded.size() != 5) {
        return false;
    }
    const int province = (word.folded[0] - '0') * 10 + (word.folded[1] - '0');
    return province >= 1 && province <= 52;
}

/// The first of the marks before a code: "C.P.", "Código Postal", "E-".
std::size_t firstMark(const WrittenWords& words, std::size_t code) {
    std::size_t first = code;
    const auto isCountry = [&](const WrittenWord& word) { return word.folded == "E" || word.folded == "ES"; };
    if (first > 0 && words[first].follows(Separator::Hyphen) && isCountry(words[first - 1])) {
        --first;
    }
    while (first > 0 && words[first - 1].is(AddressRole::CodeMark)) {
        --first;
    }
    return first;
}

/// Whether a number belongs to the word before it: "Apartado 28080", "parcela 12345".
bool belongsToOther(const WrittenWords& words, std::size_t first) {
    return first > 0 && (words[first - 1].is(AddressRole::Box) || words[first - 1].is(AddressRole::Unit) ||
                         words[first - 1].is(AddressRole::Kilometre));
}

/// Whether four digits are a code that lost its leading zero, as spreadsheets do: "C/ Mayor 5, 8001
/// Barcelona".
bool isShortened(const WrittenWords& words, std::size_t at) {
    const WrittenWord& word = words[at];
    const bool isFour =
        word.digits == 4 && word.folded.size() == 4 && word.folded[0] != '0' && !word.isFraction;
    return isFour && at + 1 < words.size() && words[at + 1].digits == 0 && words[at + 1].folded.size() > 1 &&
           !words[at + 1].follows(Separator::Apart) && !isDate(words, at, words.size());
}

class Cutting {
public:
    Cutting(const WrittenWords& words, const PostalCodeWords& code) : words_(words), code_(code.words) {}

    std::vector<AddressPiece> cut() {
        for (std::size_t at = 0; at < words_.size();) {
            std::size_t end = at + 1;
            while (end < words_.size() && !begins(at, end)) {
                ++end;
            }
            take({at, end});
            at = end;
        }
        return std::move(pieces_);
    }

private:
    /// Whether a piece begins at a word; `first`: where the one before it did.
    bool begins(std::size_t first, std::size_t at) const {
        return words_[at].follows(Separator::Apart) || at == code_.first || at == code_.last ||
               beginsStreet(first, at);
    }

    /// "Madrid Calle Mayor 5", but not "Nagusia kalea 5" or "Camino de la Calle Real".
    bool beginsStreet(std::size_t first, std::size_t at) const {
        const WrittenWord& word = words_[at];
        if (word.entry == nullptr || word.entry->types == 0) {
            return false;
        }
        const bool isWritten = word.folded.size() >= 4 || words_.isFollowedBy(at, '/');
        if (!isWritten || word.folded.ends_with("EA") || words_[at - 1].isSmall() ||
            at + 1 == words_.size() ||
            readWrittenType(words_, at, words_.size()).kind != StreetKind::Street) {
            return false;
        }
        const WrittenWord& next = words_[at + 1];
        return !next.follows(Separator::Apart) && !next.isHouseNumber() &&
               !next.is(AddressRole::NumberMark) && !next.is(AddressRole::NoNumber) &&
               readWrittenType(words_, first, at).kind != StreetKind::Street;
    }

    void take(WordRange piece) {
        if (piece.first == code_.first && !code_.isEmpty()) {
            pieces_.push_back({piece, Kind::Code});
            return;
        }
        if (isArticleOfLast(piece)) {
            pieces_.back().words.last = piece.last;
            return;
        }
        const std::size_t inside = insideEnd(piece);
        if (inside > piece.first) {
            pieces_.push_back({{piece.first, inside}, Kind::Inside});
        }
        if (inside < piece.last) {
            pieces_.push_back(classified({inside, piece.last}));
        }
    }

    /// "Coruña, A", "Palmas (Las)"
    bool isArticleOfLast(WordRange piece) const {
        if (pieces_.empty() || pieces_.back().kind != Kind::Text || piece.size() > 2) {
            return false;
        }
        for (std::size_t i = piece.first; i < piece.last; ++i) {
            if (!words_[i].isSmall()) {
                return false;
            }
        }
        return true;
    }

    /// One past the number, floor or door with which a piece begins.
    std::size_t insideEnd(WordRange piece) const {
        std::size_t end = piece.first;
        const bool isType = words_[end].isLetter() && words_[end].entry != nullptr &&
                            words_[end].entry->types != 0 && words_.isFollowedBy(end, '/');
        if (isType || isDate(words_, piece.first, piece.last)) {
            return end;
        }
        const WrittenNumber number = readNumber(words_, piece.first, piece.last);
        end = floorEnd(words_, number.isThere() ? number.words.last : end, piece.last);
        // The name of a street may begin with a figure.
        const bool isName = end < piece.last && (pieces_.empty() || words_[end].isSmall());
        return isName ? piece.first : end;
    }

    AddressPiece classified(WordRange piece) const {
        const WrittenWord& word = words_[piece.first];
        AddressPiece result{piece};
        result.isNumbered = isNumbered(piece);
        const WrittenType type = readWrittenType(words_, piece.first, piece.last);
        if (word.is(AddressRole::Country) || word.is(AddressRole::Box) || word.is(AddressRole::Building)) {
            result.kind = Kind::Aside;
        } else if (type.kind != StreetKind::None && isOnlyType(type.end, piece.last)) {
            const bool isAfterName = !pieces_.empty() && pieces_.back().kind == Kind::Text;
            result.kind = isAfterName ? Kind::Type : Kind::Text;
        } else if (type.kind != StreetKind::None) {
            result.kind = type.kind == StreetKind::Street   ? Kind::Street
                          : type.kind == StreetKind::Estate ? Kind::Estate
                                                            : Kind::Other;
        } else if (result.isNumbered) {
            result.kind = Kind::Numbered;
        }
        return result;
    }

    bool isOnlyType(std::size_t at, std::size_t last) const {
        while (at < last && words_[at].isSmall()) {
            ++at;
        }
        return at == last;
    }

    bool isNumbered(WordRange piece) const {
        for (std::size_t i = piece.first + 1; i < piece.last; ++i) {
            if (words_[i].digits != 0 || words_[i].is(AddressRole::NoNumber)) {
                return true;
            }
        }
        return false;
    }

    const WrittenWords& words_;
    WordRange code_;
    std::vector<AddressPiece> pieces_;
};

} // namespace

PostalCodeWords findPostalCode(const WrittenWords& words) {
    PostalCodeWords found;
    bool isMarked = false, hasNumber = false;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::size_t first = firstMark(words, i);
        const bool isWhole = isCodeText(words[i]);
        const bool isFourDigits =
            found.words.isEmpty() && isShortened(words, i) && (first < i || (hasNumber && i > 0));
        if ((isWhole || isFourDigits) && !belongsToOther(words, first) && (first < i || !isMarked)) {
            found = {{first, i + 1}, i};
            isMarked = first < i;
        }
        hasNumber = hasNumber || words[i].isHouseNumber();
    }
    return found;
}

std::vector<AddressPiece> cutIntoPieces(const WrittenWords& words, const PostalCodeWords& code) {
    return Cutting(words, code).cut();
}

} // namespace ambrel
