// The exchange with the street-directory service: one blocking POST.
#pragma once

#include <cstddef>
#include <functional>
#include <stdexcept>
#include <string>

namespace ambrel {

/// An exchange that failed: no connection, a status of 400 or more, a redirection that leads nowhere, no body
/// with another status than 200, an answer cut short or too large. The text is Spanish, UTF-8.
class TransportError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Largest answer that is taken, in bytes: forty times the largest municipality's. As a document it may take
/// sixteen times that.
inline constexpr std::size_t largestAnswer = std::size_t{32} << 20;

/// Posts a UTF-8 text with its SOAP action and returns the whole body of the answer. `whileWaiting` is called
/// several times a second until the answer is there; it may be empty. Errors: TransportError.
[[nodiscard]] std::string postSoap(const std::string& url, const std::string& action, const std::string& body,
                                   const std::function<void()>& whileWaiting = {});

} // namespace ambrel
