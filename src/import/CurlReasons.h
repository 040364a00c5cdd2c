// Why an exchange failed, in Spanish.
#pragma once

#include <string>

#include <curl/curl.h>

namespace ambrel {

/// The reason of a code of libcurl; one that no exchange of ours can meet is given by its number.
[[nodiscard]] std::string reasonOf(CURLcode code);
[[nodiscard]] std::string reasonOf(CURLMcode code);

} // namespace ambrel
