// Test fixture: a few towns and streets, and a validator of addresses in them.
#pragma once

#include <string>

#include "address/AddressValidator.h"
#include "data/PostalTables.h"

namespace postal_tests {

class PostalVerdicts : public PostalTables {
protected:
    PostalVerdicts();

    /// Judges an address whose texts are UTF-8.
    ambrel::JudgedAddress judge(ambrel::GivenAddress given);
    std::string verdict(const ambrel::GivenAddress& given);

    ambrel::AddressValidator validator;
};

} // namespace postal_tests
