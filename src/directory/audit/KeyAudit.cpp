// Compares the keys of all rows.
#include "directory/audit/KeyAudit.h"

#include <algorithm>
#include <charconv>
#include <tuple>

#include "dbase/system/counted.h"
#include "directory/LeadingZeros.h"
#include "directory/audit/NameAudit.h"
#include "directory/audit/StreetRowAudit.h"
#include "loading/ansi_text.h"

namespace ambrel::directory {

namespace {

constexpr std::size_t keyWidth = 8;
constexpr std::string_view userBlock = "99";
constexpr std::string_view nearlyFull = "99900000", full = "99999999";

/// The number of a text of digits; 0 for anything else, which is what address boxes make of it, too.
std::uint32_t numberOf(std::string_view text) {
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() ? number : 0;
}

std::string badKeyText(const StreetRow& row) {
    if (row.key.empty()) {
        return streetName(row) + " no tiene clave";
    }
    const bool isZero = row.key.find_first_not_of('0') == std::string::npos;
    return "la clave «" + loading::utf8FromAnsi(row.key) + "» de " + streetName(row) +
           (isZero ? " es cero, que no es de ninguna" : " no es un número de ocho cifras");
}

void tellBadKey(const StreetRow& row, std::uint32_t number, const FindingSink& sink) {
    Finding found = withText(aboutStreet(row), FindingClass::BadKey, badKeyText(row));
    if (number != 0) { // found all the same
        found.severity = Severity::Warning;
    }
    sink(found);
}

} // namespace

void KeyAudit::add(const StreetRow& row, const FindingSink& sink) {
    const std::uint32_t number = numberOf(row.key);
    if (number == 0 || row.key.size() != keyWidth) {
        tellBadKey(row, number, sink);
        return;
    }
    keys_.push_back({number, row.record, static_cast<std::uint8_t>(numberOf(provinceOf(row)))});
    if (row.key.starts_with(userBlock)) {
        ++userKeys_;
        highestUserKey_ = std::max(highestUserKey_, row.key);
    }
}

void KeyAudit::finish(const FindingSink& sink) {
    std::ranges::sort(keys_, {}, [](const Key& key) { return std::tie(key.number, key.record); });
    const Key* first = nullptr; // of those with its number
    for (const Key& key : keys_) {
        if (first == nullptr || first->number != key.number) {
            first = &key;
            continue;
        }
        const std::string text = digits(key.number, keyWidth);
        const std::string province = digits(key.province, 2);
        sink(withText({.table = AuditedTable::Streets,
                       .record = key.record,
                       .key = text,
                       .province = key.province == 0 ? std::string() : province},
                      FindingClass::RepeatedKey,
                      "la clave " + text + " es también la del registro " + std::to_string(first->record)));
    }
    tellBlock(sink);
}

void KeyAudit::tellBlock(const FindingSink& sink) const {
    if (highestUserKey_ >= nearlyFull) {
        Finding found =
            withText({.table = AuditedTable::Streets, .key = highestUserKey_}, FindingClass::FullBlock,
                     "el bloque «99» tiene " + dbase::counted(userKeys_, "clave", "claves") +
                         " y la más alta es " + highestUserKey_);
        if (highestUserKey_ >= full) {
            found.severity = Severity::Grave;
            found.text += "; la siguiente repetirá 99000000";
        }
        sink(found);
    }
}

} // namespace ambrel::directory
