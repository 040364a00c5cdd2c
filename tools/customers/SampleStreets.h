// The streets of the sample with their towns, as somebody who invents addresses needs them.
#pragma once

#include <string>
#include <vector>

namespace customers {

/// Numbers of one postal code: the first and the last of each side.
struct Stretch {
    int oddFirst = 0, oddLast = 0, evenFirst = 0, evenLast = 0;
    std::string postalCode;
};

/// Texts in UTF-8, as the tables hold them.
struct Street {
    std::string type, name;
    std::string ineCode, town, province;
    std::vector<Stretch> stretches;
};

/// Those of municipalities, in the order of the table.
[[nodiscard]] std::vector<Street> sampleStreets();

} // namespace customers
