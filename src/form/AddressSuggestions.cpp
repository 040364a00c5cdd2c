// Asks for suggestions and shows them as rows.
#include "form/AddressSuggestions.h"

#include <QLineEdit>
#include <QStringList>
#include <chrono>
#include <utility>

#include "dbase/system/error.h"
#include "form/AddressValidation.h"
#include "form/TypedText.h"
#include "services/Confamb.h"
#include "services/Text.h"

namespace ambrel {
namespace {

using Box = AddressBoxes::Box;

constexpr std::chrono::milliseconds readingSlice(8); // between two frames of a screen
constexpr std::size_t mostCodes = 3;                 // listed one by one
constexpr int postalCodeDigits = 5;

QString shownCodes(const std::vector<std::string>& codes) {
    if (codes.size() > mostCodes) {
        return QStringLiteral("%1 – %2").arg(fromWindows1252(codes.front()), fromWindows1252(codes.back()));
    }
    QStringList texts;
    for (const std::string& code : codes) {
        texts << fromWindows1252(code);
    }
    return texts.join(QStringLiteral(", "));
}

/// In Windows-1252 one byte is one letter.
std::vector<std::pair<int, int>> lettersOf(const std::vector<TextSpan>& spans) {
    std::vector<std::pair<int, int>> letters;
    for (const auto& [first, length] : spans) {
        letters.emplace_back(static_cast<int>(first), static_cast<int>(length));
    }
    return letters;
}

} // namespace

void AddressSuggestions::use(std::shared_ptr<Suggestions> suggestions) {
    suggestions_ = std::move(suggestions);
    isOwn_ = false;
}

/// The list keeps out of the way of an exact look-up that has completed a text or validated it.
bool AddressSuggestions::isSettled(Box box, const QString& text) const {
    return validation_.state(box) == AddressBoxes::State::Validated ||
           validation_.boxes().at(box)->text() != text;
}

std::optional<AddressSuggestions::Rows> AddressSuggestions::rows(Box box, const QString& text,
                                                                 Occasion occasion) {
    if (occasion == Occasion::Typed && isSettled(box, text)) {
        return Rows();
    }
    if (isOwn_ && !suggestions_) {
        suggestions_ = std::make_shared<Suggestions>();
    }
    if (!suggestions_) {
        return Rows();
    }
    try {
        const std::string typed = toNearestWindows1252(text); // a pasted text may have other letters
        return box == Box::Municipality ? municipalities(typed) : streets(typed);
    } catch (const dbase::Error&) {
        if (occasion == Occasion::Asked) {
            throw;
        }
        return Rows(); // leaving the box reports it: an error box at each letter would be in the way
    }
}

std::optional<AddressSuggestions::Rows> AddressSuggestions::municipalities(const std::string& text) {
    MunicipalityQuery query{.text = text, .withLocalities = Config.EntidadesMenores};
    if (validation_.isProvinceTyped()) {
        query.province = suggestions_->provinceNamed(bytesOf(validation_.text(Box::Province)));
    }
    if (!suggestions_->prepare(query, readingSlice)) {
        return std::nullopt;
    }
    Rows rows;
    for (const SuggestedMunicipality& found : suggestions_->municipalities(query)) {
        const bool hasOtherName = !found.found.empty();
        QString place = fromWindows1252(suggestions_->provinceName(found.province));
        if (hasOtherName) {
            place = fromWindows1252(found.name) + QStringLiteral(" (%1)").arg(place);
        }
        rows.push_back({.name = fromWindows1252(hasOtherName ? found.found : found.name),
                        .type = {},
                        .place = place,
                        .postalCodes = shownCodes(found.postalCodes),
                        .marks = lettersOf(found.marks),
                        .value = QVariant::fromValue(found)});
    }
    return rows;
}

/// In the municipality; without one, in what else says where the street is.
StreetQuery AddressSuggestions::streetQuery(const std::string& text) {
    StreetQuery query{
        .text = text, .type = bytesOf(validation_.text(Box::StreetType)), .ineCode = validation_.ineCode()};
    if (query.ineCode.empty()) {
        const QString code = validation_.text(Box::PostalCode);
        query.postalCode = code.size() == postalCodeDigits ? bytesOf(code) : std::string();
        query.province = suggestions_->provinceNamed(bytesOf(validation_.text(Box::Province)));
    }
    return query;
}

std::optional<AddressSuggestions::Rows> AddressSuggestions::streets(const std::string& text) {
    const StreetQuery query = streetQuery(text);
    if (query.ineCode.empty() && query.postalCode.empty() && query.province.empty()) {
        return Rows();
    }
    if (!suggestions_->prepare(query, readingSlice)) {
        return std::nullopt;
    }
    Rows rows;
    for (const SuggestedStreet& found : suggestions_->streets(query)) {
        if (query.ineCode.empty() && found.ineCode.empty()) {
            continue; // it would not say which municipality to put into the form
        }
        rows.push_back({.name = fromWindows1252(found.name),
                        .type = fromWindows1252(found.type),
                        .place = fromWindows1252(found.municipality),
                        .postalCodes = shownCodes(found.postalCodes),
                        .marks = lettersOf(found.marks),
                        .value = QVariant::fromValue(found)});
    }
    return rows;
}

void AddressSuggestions::take(Box box, const SuggestionRow& row) {
    if (box == Box::Municipality) {
        validation_.take(row.value.value<SuggestedMunicipality>());
    } else {
        validation_.take(row.value.value<SuggestedStreet>());
    }
}

} // namespace ambrel
