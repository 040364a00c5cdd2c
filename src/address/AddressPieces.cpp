// Cutting an address into pieces.
#include "address/AddressPieces.h"

#include <algorithm>
#include <array>
#include <string_view>

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
    const auto isOfBox = [&](std::size_t mark) { // "Apartado postal C.P. 28080"
        return words[mark].folded == "POSTAL" && mark > 0 && words[mark - 1].is(AddressRole::Box);
    };
    while (first > 0 && words[first - 1].is(AddressRole::CodeMark) && !isOfBox(first - 1)) {
        --first;
    }
    return first;
}

/// Whether a number is that of a post-office box: "Apartado 28080", "Apdo. de Correos nº 28080", "apartado
/// postal 28080".
bool isOfBox(const WrittenWords& words, std::size_t at) {
    static constexpr std::array<std::string_view, 6> mail{"CORREOS",  "CORREO", "CORREUS",
                                                          "CORREIOS", "POSTAL", "POSTA"};
    for (; at > 0 && !words[at].follows(Separator::Apart); --at) {
        const WrittenWord& before = words[at - 1];
        if (before.is(AddressRole::Box)) {
            return true;
        }
        if (!before.isSmall() && !before.is(AddressRole::NumberMark) &&
            std::ranges::find(mail, before.folded) == mail.end()) {
            return false;
        }
    }
    return false;
}

/// Whether a number is joined to the word for a part of a building: "parcela 12345", "local nº 12345".
bool isOfUnit(const WrittenWords& words, std::size_t at) {
    while (at > 0 && !words[at].follows(Separator::Apart) && words[at - 1].is(AddressRole::NumberMark)) {
        --at;
    }
    return at > 0 && !words[at].follows(Separator::Apart) && words[at - 1].is(AddressRole::Unit);
}

/// How much a number looks like the postal code; of equals the last one is it.
enum class CodeLikeness { None, OfUnit, Plain, Marked };

/// `first`: its own word, or the first of the marks before it.
CodeLikeness codeLikeness(const WrittenWords& words, std::size_t first, std::size_t at) {
    const bool isOfRoad =
        first > 0 && !words[first].follows(Separator::Apart) && words[first - 1].is(AddressRole::Kilometre);
    if (isOfRoad || isOfBox(words, at)) {
        return CodeLikeness::None;
    }
    if (first < at) {
        return CodeLikeness::Marked;
    }
    // "parcela 12345" is the parcel's where the line has another code. Alone it may not be passed over:
    // "local 28009 Madrid".
    return isOfUnit(words, at) ? CodeLikeness::OfUnit : CodeLikeness::Plain;
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
    Cutting(const WrittenWords& words, const PostalCodeWords& code, bool hasTown)
        : words_(words), code_(code.words), hasTown_(hasTown) {}

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
               beginsStreet(first, at) || beginsCountry(at) || beginsBox(at) || endsBox(at) ||
               endsNote(first, at);
    }

    /// "C/ Sol 3 Apdo. 123", but not "Calle Apartado 5" or "Calle del Apartado 5".
    bool beginsBox(std::size_t at) const {
        const WrittenWord& before = words_[at - 1];
        const bool isAfterNumber = before.digits != 0 || before.isLetter() ||
                                   before.is(AddressRole::Inside) || before.is(AddressRole::Suffix) ||
                                   before.is(AddressRole::NoNumber);
        const bool isAfterTown = !code_.isEmpty() && at > code_.last && !before.isSmall() &&
                                 (before.entry == nullptr || before.entry->types == 0);
        return words_[at].is(AddressRole::Box) && (isAfterNumber || isAfterTown);
    }

    /// "Apdo. 123 Madrid"
    bool endsBox(std::size_t at) const {
        return words_[at - 1].digits != 0 && isOfBox(words_, at - 1) && words_[at].digits == 0;
    }

    /// "Tel. 91 555 12 34 Getafe", but not "Tel. 915551234 extensión 5"
    bool endsNote(std::size_t first, std::size_t at) const {
        if (!words_[first].is(AddressRole::Note) || words_[at - 1].digits == 0) {
            return false;
        }
        std::size_t end = at;
        while (end < words_.size() && words_[end].digits == 0 &&
               (end == at || !words_[end].follows(Separator::Apart))) {
            ++end;
        }
        return end > at && (end == words_.size() || words_[end].follows(Separator::Apart));
    }

    /// "28009 Madrid España", but not "Plaza España"
    bool beginsCountry(std::size_t at) const {
        return words_[at].is(AddressRole::Country) && at + 1 == words_.size() && !code_.isEmpty() &&
               at > code_.last;
    }

    /// "Madrid Calle Mayor 5", but not "Nagusia kalea 5" or "Camino de la Calle Real".
    bool beginsStreet(std::size_t first, std::size_t at) const {
        const WrittenWord& word = words_[at];
        if (word.entry == nullptr || word.entry->types == 0 || words_[at - 1].isSmall() ||
            at + 1 == words_.size() || word.folded.ends_with("EA")) {
            return false;
        }
        const bool isAfterCode = !code_.isEmpty() && first == code_.last;
        const bool isWritten = word.folded.size() >= 2 || words_.isFollowedBy(at, '/') ||
                               (isAfterCode && words_.isFollowedBy(at, '.'));
        const WrittenWord& next = words_[at + 1];
        const bool isNamed = !next.follows(Separator::Apart) && !next.isHouseNumber() &&
                             !next.is(AddressRole::NumberMark) && !next.is(AddressRole::NoNumber);
        return isWritten && isNamed &&
               readWrittenType(words_, at, words_.size()).kind == StreetKind::Street &&
               readWrittenType(words_, first, at).kind != StreetKind::Street;
    }

    void take(WordRange piece) {
        if (piece.first == code_.first && !code_.isEmpty()) {
            pieces_.push_back({piece, Kind::Code});
            return;
        }
        if (const std::size_t article = articleEnd(piece); article > piece.first) {
            pieces_.back().words.last = article;
            piece.first = article;
        }
        if (isVillage(piece)) {
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

    /// One past the words with which a piece completes the name before it: "Coruña, A", "Mar, de la 18".
    std::size_t articleEnd(WordRange piece) const {
        if (pieces_.empty() || pieces_.back().isNumbered) {
            return piece.first;
        }
        const Kind before = pieces_.back().kind;
        std::size_t end = piece.first;
        while (end < piece.last && end < piece.first + 3 && words_[end].isSmall()) {
            ++end;
        }
        const bool isWhole = end == piece.last && before == Kind::Text;
        const bool isBeforeNumber =
            (end == piece.last || words_[end].isHouseNumber() || words_[end].is(AddressRole::NumberMark) ||
             words_[end].is(AddressRole::NoNumber)) &&
            words_[piece.first].folded.size() > 1;
        const bool isName =
            before == Kind::Text || before == Kind::Street || before == Kind::Estate || before == Kind::Other;
        return isWhole || (isBeforeNumber && isName) ? end : piece.first;
    }

    /// "MAYOR (ARIJA)", as tables of streets write it.
    bool isVillage(WordRange piece) const {
        return !hasTown_ && !piece.isEmpty() && !pieces_.empty() && !pieces_.back().isNumbered &&
               words_[piece.first].follows(Separator::Open) &&
               (pieces_.back().isName() || pieces_.back().kind == Kind::Street) &&
               classified(piece).kind == Kind::Text && insideEnd(piece) == piece.first;
    }

    /// Whether a piece begins with one letter that is no door: "C. Mayor 5", "A Laracha".
    bool beginsWithLetterOfName(WordRange piece) const {
        const WrittenWord& word = words_[piece.first];
        if (!word.isLetter()) {
            return false;
        }
        const bool isType = word.entry != nullptr && word.entry->types != 0;
        if (isType && words_.isFollowedBy(piece.first, '/')) {
            return true;
        }
        if (piece.size() < 2) { // "MAYOR (C.)"
            return isType && word.follows(Separator::Open) && mayFollowName(piece);
        }
        const WrittenWord& next = words_[piece.first + 1];
        const bool isBeforeName =
            next.digits == 0 && (next.folded.size() > 1 || words_.isFollowedBy(piece.first, '.'));
        return isBeforeName && (isType || word.folded == "A" || word.folded == "O") &&
               !next.is(AddressRole::Inside) && !next.is(AddressRole::Unit);
    }

    /// One past the number, floor or door with which a piece begins.
    std::size_t insideEnd(WordRange piece) const {
        std::size_t end = piece.first;
        if (piece.isEmpty() || beginsWithLetterOfName(piece) || isDate(words_, piece.first, piece.last)) {
            return end;
        }
        const WrittenNumber number = readNumber(words_, piece.first, piece.last);
        end = floorEnd(words_, number.isThere() ? number.words.last : end, piece.last);
        // The name of a street may begin with a figure.
        const bool isName = end < piece.last && (pieces_.empty() || words_[end].folded.starts_with("DE"));
        return isName ? piece.first : end;
    }

    AddressPiece classified(WordRange piece) const {
        const WrittenWord& word = words_[piece.first];
        AddressPiece result{piece};
        result.isNumbered = isNumbered(piece);
        const WrittenType type = readWrittenType(words_, piece.first, piece.last);
        const bool isCountry = word.is(AddressRole::Country) && piece.size() == 1 && !pieces_.empty();
        if (isCountry || word.is(AddressRole::Box) || word.is(AddressRole::Note)) {
            result.kind = Kind::Aside;
        } else if (word.is(AddressRole::Building)) {
            result.kind = Kind::Building;
        } else if (type.kind != StreetKind::None && isOnlyType(type.end, piece.last)) {
            result.kind = mayFollowName(piece) ? Kind::Type : Kind::Text;
        } else if (type.kind != StreetKind::None) {
            result.kind = type.kind == StreetKind::Street   ? Kind::Street
                          : type.kind == StreetKind::Estate ? Kind::Estate
                                                            : Kind::Other;
        } else if (result.isNumbered) {
            result.kind = Kind::Numbered;
        }
        return result;
    }

    /// Whether a type may be that of the piece before it.
    bool mayFollowName(WordRange piece) const {
        return !pieces_.empty() &&
               (pieces_.back().kind == Kind::Text ||
                (pieces_.back().kind == Kind::Numbered && words_[piece.first].follows(Separator::Open)));
    }

    bool isOnlyType(std::size_t at, std::size_t last) const {
        while (at < last && words_[at].isSmall() && !words_[at].isLetter()) {
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
    bool hasTown_;
    std::vector<AddressPiece> pieces_;
};

} // namespace

PostalCodeWords findPostalCode(const WrittenWords& words) {
    PostalCodeWords found;
    CodeLikeness best = CodeLikeness::None;
    bool hasNumber = false;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::size_t first = firstMark(words, i);
        const bool isWhole = isCodeText(words[i]);
        const bool isFourDigits =
            found.words.isEmpty() && isShortened(words, i) && (first < i || (hasNumber && i > 0));
        const CodeLikeness likeness = codeLikeness(words, first, i);
        const bool isCode =
            isWhole ? likeness > CodeLikeness::None : isFourDigits && likeness >= CodeLikeness::Plain;
        if (isCode && likeness >= best) {
            found = {{first, i + 1}, i};
            best = likeness;
        }
        hasNumber = hasNumber || words[i].isHouseNumber();
    }
    return found;
}

std::vector<AddressPiece> cutIntoPieces(const WrittenWords& words, const PostalCodeWords& code,
                                        bool hasTown) {
    return Cutting(words, code, hasTown).cut();
}

} // namespace ambrel
