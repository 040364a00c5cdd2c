// Every reason of the network library is a short Spanish text.
#include "import/CurlReasons.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(CurlReasons, AreNeverTheLibrarysOwnTexts) {
    for (int code = 1; code <= CURL_LAST; ++code) {
        const std::string reason = ambrel::reasonOf(static_cast<CURLcode>(code));
        EXPECT_NE(reason, curl_easy_strerror(static_cast<CURLcode>(code)));
        EXPECT_FALSE(reason.empty());
        EXPECT_LT(reason.size(), 80U) << reason;
    }
    for (int code = 1; code < CURLM_LAST; ++code) {
        EXPECT_NE(ambrel::reasonOf(static_cast<CURLMcode>(code)),
                  curl_multi_strerror(static_cast<CURLMcode>(code)));
    }
}

TEST(CurlReasons, SayWhatTheUserCanActOn) {
    EXPECT_EQ(ambrel::reasonOf(CURLE_COULDNT_RESOLVE_HOST), "no se encuentra el servidor");
    EXPECT_EQ(ambrel::reasonOf(CURLE_PEER_FAILED_VERIFICATION),
              "el certificado del servidor no es de confianza");
    EXPECT_EQ(ambrel::reasonOf(CURLE_URL_MALFORMAT), "la dirección del servicio no es correcta");
    EXPECT_EQ(ambrel::reasonOf(CURLE_TELNET_OPTION_SYNTAX), "error 49 de la conexión");
}

} // namespace
