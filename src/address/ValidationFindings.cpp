// Collects what a report shows, row by row.
#include "address/ValidationFindings.h"

#include <algorithm>
#include <initializer_list>

#include "address/ValidatedRow.h"
#include "dbase/dbf/codepage.h"
#include "report/ShownText.h"
#include "report/SpanishNumbers.h"

namespace ambrel {

namespace {

constexpr std::size_t mostCharactersOfPart = 120;

/// Windows-1252 as the page needs it. Only what will be shown is converted: a row may have megabytes.
std::string shown(std::string_view text, std::size_t mostCharacters = 200) {
    const std::string begin = dbase::CodePage::windows1252().toUtf8(text.substr(0, mostCharacters));
    return report::shownText(begin) + (text.size() > mostCharacters ? report::cutMark(text.size()) : "");
}

/// The parts that are not empty, with `between` between them.
std::string joined(std::initializer_list<std::string_view> parts, std::string_view between) {
    std::string text;
    for (const std::string_view part : parts) {
        if (!part.empty()) {
            (text += text.empty() ? "" : between) += part;
        }
    }
    return text;
}

/// "CL ALCALA 100, 3º B".
std::string streetLine(std::string_view type, std::string_view street, std::string_view number,
                       std::string_view rest) {
    return joined({joined({type, street, number}, " "), rest}, ", ");
}

std::string givenText(const GivenAddress& given) {
    const std::string place = joined({given.postalCode, given.municipality}, " ");
    const std::string columns =
        joined({streetLine(given.type, given.street, given.number, given.rest), place}, ", ") +
        (given.province.empty() ? "" : " (" + given.province + ")");
    return shown(joined({given.line, columns}, " \xB7 "));
}

/// The sentence of a change, such as «VIA: ALCLA → ALCALA».
std::string changeText(const AddressChange& change) {
    const std::string part = shown(partName(change.part)), to = shown(change.to, mostCharactersOfPart);
    return change.from.empty() ? part + ": " + to
                               : part + ": " + shown(change.from, mostCharactersOfPart) + " → " + to;
}

FailedAddress::Alternative alternativeOf(const AddressAlternative& alternative) {
    std::string codes;
    for (std::size_t i = 0; i < alternative.postalCodes.size() && i < 4; ++i) {
        (codes += i == 0 ? "" : ", ") += alternative.postalCodes[i];
    }
    if (alternative.postalCodes.size() > 4) {
        codes += '\x85'; // «…»
    }
    return {shown(joined({alternative.type, alternative.street}, " ")),
            shown(joined({codes, alternative.municipality}, " ")), alternative.province};
}

FailedAddress failureOf(const ValidatedRow& row) {
    const JudgedAddress& judged = row.judged;
    FailedAddress failure{row.number, row.line, givenText(row.given), {}, {}, {}, {}, {}};
    if (judged.verdict == Verdict::BrokenRow || judged.verdict == Verdict::Empty) {
        failure.remarks = {shown(judged.reason)};
        return failure;
    }
    failure.street = shown(streetLine(judged.type, judged.street, judged.number, judged.rest));
    failure.place = shown(joined({judged.postalCode, judged.municipality}, " "));
    failure.province = judged.province;
    if (!judged.reason.empty()) {
        failure.remarks.push_back(shown(judged.reason));
    }
    for (const AddressChange& change : judged.changes) {
        failure.remarks.push_back(changeText(change));
    }
    failure.remarks.push_back("confianza " + report::twoDecimals(judged.confidence));
    std::ranges::transform(judged.alternatives, std::back_inserter(failure.alternatives), alternativeOf);
    return failure;
}

/// Only two digits are a province; anything else would make as many of them as there are texts.
std::string provinceOf(const JudgedAddress& judged) {
    const auto isDigit = [](char sign) { return sign >= '0' && sign <= '9'; };
    return judged.province.size() == 2 && std::ranges::all_of(judged.province, isDigit) ? judged.province
                                                                                        : std::string();
}

constexpr char between = '\x1F'; // shown texts have no control characters

} // namespace

std::string asText(const Correction& correction) {
    return correction.part + between + correction.from + between + correction.to;
}

Correction correctionOf(const std::string& text) {
    const std::size_t from = text.find(between) + 1, to = text.find(between, from) + 1;
    return {text.substr(0, from - 1), text.substr(from, to - from - 1), text.substr(to)};
}

void ValidationFindings::add(const ValidatedRow& row) {
    const JudgedAddress& judged = row.judged;
    const auto verdict = static_cast<std::size_t>(judged.verdict);
    ++rows;
    ++verdicts.at(verdict);
    ProvinceCount& province = provinces[provinceOf(judged)];
    ++province.rows;
    if (!isSettled(judged.verdict)) {
        if (failures.at(verdict).size() < mostFailures) {
            failures.at(verdict).push_back(failureOf(row));
        }
        return;
    }
    ++province.settled;
    for (const AddressChange& change : judged.changes) {
        if (change.from.empty()) {
            ++additions[change.part];
        } else {
            corrections.add(asText({shown(partName(change.part)), shown(change.from, mostCharactersOfPart),
                                    shown(change.to, mostCharactersOfPart)}));
        }
    }
}

std::uint64_t ValidationFindings::settled() const {
    std::uint64_t sum = 0;
    for (std::size_t verdict = 0; verdict < verdictCount; ++verdict) {
        sum += isSettled(static_cast<Verdict>(verdict)) ? verdicts.at(verdict) : 0;
    }
    return sum;
}

} // namespace ambrel
