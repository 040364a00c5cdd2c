// The exchange with the street-directory service: one blocking POST.
#pragma once

#include <cstddef>
#include <functional>
#include <stdexcept>
#include <string>

namespace ambrel {

/// A failed exchange: no connection, a status of 400 or more, a redirection that leads nowhere, a status
/// other than 200 without a body, an answer cut short or too large. The text is Spanish, UTF-8.
class TransportError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Largest answer accepted, in bytes: forty times the largest municipality's. As a document it may occupy
/// sixteen times that.
inline constexpr std::size_t largestAnswer = std::size_t{32} << 20;

/// Posts a UTF-8 text with its SOAP action and returns the whole body of the answer. `whileWaiting` is called
/// several times a second until the answer is complete; it may be empty. Errors: TransportError.
[[nodiscard]] std::string postSoap(const std::string& url, const std::string& action, const std::string& body,
                                   const std::function<void()>& whileWaiting = {});

} // namespace ambrel
