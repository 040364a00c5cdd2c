// Test fixture: a few towns and streets, and a validator of addresses in them.
#pragma once

#include <string>

#include "address/AddressValidator.h"
#include "data/PostalTables.h"

namespace postal_tests {

using ambrel::AddressChange;
using ambrel::JudgedAddress;
using ambrel::JudgedPart;
using ambrel::Verdict;

class PostalVerdicts : public PostalTables {
protected:
    PostalVerdicts();

    /// Judges an address whose texts are UTF-8.
    JudgedAddress judge(ambrel::GivenAddress given);
    std::string verdict(const ambrel::GivenAddress& given);

    ambrel::AddressValidator validator;
};
using AddressVerdicts = PostalVerdicts;

} // namespace postal_tests
