// Spanish texts for the codes of libcurl.
#include "import/CurlReasons.h"

namespace ambrel {

std::string reasonOf(CURLcode code) {
    switch (code) {
    case CURLE_UNSUPPORTED_PROTOCOL:
    case CURLE_URL_MALFORMAT:
        return "la dirección del servicio no es correcta";
    case CURLE_FAILED_INIT:
    case CURLE_NOT_BUILT_IN:
    case CURLE_UNKNOWN_OPTION:
    case CURLE_BAD_FUNCTION_ARGUMENT:
        return "no se puede iniciar la conexión";
    case CURLE_COULDNT_RESOLVE_HOST:
        return "no se encuentra el servidor";
    case CURLE_COULDNT_RESOLVE_PROXY:
        return "no se encuentra el proxy";
    case CURLE_COULDNT_CONNECT:
        return "el servidor no acepta la conexión";
    case CURLE_PROXY:
        return "el proxy no acepta la conexión";
    case CURLE_INTERFACE_FAILED:
    case CURLE_NO_CONNECTION_AVAILABLE:
        return "este equipo no tiene conexión";
    case CURLE_OPERATION_TIMEDOUT:
        return "el servidor no contesta";
    case CURLE_REMOTE_ACCESS_DENIED:
    case CURLE_LOGIN_DENIED:
    case CURLE_AUTH_ERROR:
        return "el servidor no permite el acceso";
    case CURLE_HTTP_RETURNED_ERROR:
        return "el servidor responde con un error";
    case CURLE_GOT_NOTHING:
    case CURLE_SEND_ERROR:
    case CURLE_RECV_ERROR:
    case CURLE_SEND_FAIL_REWIND:
    case CURLE_ABORTED_BY_CALLBACK:
        return "la conexión se ha cortado";
    case CURLE_PARTIAL_FILE:
        return "la respuesta ha llegado cortada";
    case CURLE_WEIRD_SERVER_REPLY:
    case CURLE_HTTP2:
    case CURLE_HTTP2_STREAM:
    case CURLE_HTTP3:
    case CURLE_QUIC_CONNECT_ERROR:
    case CURLE_BAD_CONTENT_ENCODING:
    case CURLE_CHUNK_FAILED:
        return "la respuesta del servidor no se entiende";
    case CURLE_FILESIZE_EXCEEDED:
    case CURLE_WRITE_ERROR:
        return "la respuesta es demasiado grande";
    case CURLE_TOO_MANY_REDIRECTS:
        return "el servidor remite una y otra vez a otra dirección";
    case CURLE_OUT_OF_MEMORY:
        return "no queda memoria";
    case CURLE_SSL_CONNECT_ERROR:
    case CURLE_SSL_CIPHER:
    case CURLE_SSL_SHUTDOWN_FAILED:
    case CURLE_USE_SSL_FAILED:
        return "no se puede establecer una conexión segura con el servidor";
    case CURLE_PEER_FAILED_VERIFICATION:
    case CURLE_SSL_ISSUER_ERROR:
    case CURLE_SSL_PINNEDPUBKEYNOTMATCH:
    case CURLE_SSL_INVALIDCERTSTATUS:
        return "el certificado del servidor no es de confianza";
    case CURLE_SSL_CERTPROBLEM:
    case CURLE_SSL_CLIENTCERT:
        return "el servidor pide un certificado que este equipo no tiene";
    case CURLE_SSL_CACERT_BADFILE:
    case CURLE_SSL_CRL_BADFILE:
    case CURLE_SSL_ENGINE_NOTFOUND:
    case CURLE_SSL_ENGINE_SETFAILED:
    case CURLE_SSL_ENGINE_INITFAILED:
        return "no se pueden leer los certificados de este equipo";
    default:
        return "error " + std::to_string(static_cast<int>(code)) + " de la conexión";
    }
}

std::string reasonOf(CURLMcode code) {
    return code == CURLM_OUT_OF_MEMORY
               ? "no queda memoria"
               : "error " + std::to_string(static_cast<int>(code)) + " al atender la conexión";
}

} // namespace ambrel
