// Reads a request as strictly as it must be written: byte for byte.
#pragma once

#include <stdexcept>
#include <string>

#include "tools/callejero/Operation.h"

namespace callejero {

/// The parts of a received request that the operation depends on.
struct Received {
    std::string contentType, soapAction, body;
};

/// A valid request; texts are UTF-8.
struct Request {
    Operation operation = Operation::Provinces;
    std::string province = {}, municipality = {};
    std::string body = {};

    /// Names are sent unescaped: an ampersand or an angle bracket in one makes the whole text invalid XML.
    [[nodiscard]] bool isXml() const {
        return (province + municipality).find_first_of("&<") == std::string::npos;
    }
};

/// A request that is not written as required. The text is Spanish, UTF-8, and says what is wrong.
class WrongRequest : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Errors: WrongRequest.
[[nodiscard]] Request readRequest(const Received& received);

} // namespace callejero
