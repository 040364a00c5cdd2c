// The parts of an address in UTF-8, for tests to write and to print.
#pragma once

#include <ostream>
#include <string>

#include "address/AddressParts.h"
#include "dbase/dbf/codepage.h"

namespace ambrel::test {

/// As AddressParts, in UTF-8.
struct WrittenAddress {
    std::string type = {}, street = {}, number = {}, numberSuffix = {}, numberEnd = {}, floor = {}, rest = {};
    std::string postalCode = {}, municipality = {}, province = {};

    friend bool operator==(const WrittenAddress&, const WrittenAddress&) = default;
};

inline WrittenAddress written(const AddressParts& parts) {
    const auto utf8 = [](const std::string& text) { return dbase::CodePage::windows1252().toUtf8(text); };
    return {utf8(parts.type),         utf8(parts.street),  utf8(parts.number), utf8(parts.numberSuffix),
            utf8(parts.numberEnd),    utf8(parts.floor),   utf8(parts.rest),   utf8(parts.postalCode),
            utf8(parts.municipality), utf8(parts.province)};
}

inline std::ostream& operator<<(std::ostream& out, const WrittenAddress& address) {
    return out << "type «" << address.type << "» street «" << address.street << "» number «" << address.number
               << "» suffix «" << address.numberSuffix << "» end «" << address.numberEnd << "» floor «"
               << address.floor << "» rest «" << address.rest << "» code «" << address.postalCode
               << "» municipality «" << address.municipality << "» province «" << address.province << "»";
}

} // namespace ambrel::test
