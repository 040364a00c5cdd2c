// Posts requests with libcurl.
#include "import/Transport.h"

#include <curl/curl.h>

#include <chrono>
#include <memory>
#include <string_view>
#include <utility>

#include "import/CurlReasons.h"

namespace ambrel {
namespace {

using Clock = std::chrono::steady_clock;

/// Interval between calls of the caller's function, and the longest wait for progress of the exchange.
constexpr std::chrono::milliseconds patience{50};
constexpr long mostRedirections = 5;
constexpr long okStatus = 200;
constexpr long firstRedirection = 300;                      // redirections to an address are followed
constexpr std::size_t largestHead = std::size_t{256} << 10; // all redirections together

struct Library {
    Library() { curl_global_init(CURL_GLOBAL_DEFAULT); }
    ~Library() { curl_global_cleanup(); }
};

template<auto Free>
struct Deleter {
    template<typename Handle>
    void operator()(Handle* handle) const {
        Free(handle);
    }
};

using Easy = std::unique_ptr<CURL, Deleter<curl_easy_cleanup>>;
using Multi = std::unique_ptr<CURLM, Deleter<curl_multi_cleanup>>;
using Headers = std::unique_ptr<curl_slist, Deleter<curl_slist_free_all>>;

[[noreturn]] void fail(const std::string& reason) {
    throw TransportError("No se ha podido hablar con el servicio: " + reason + ".");
}

/// What has been received of an answer.
struct Answer {
    bool isHeadWhole = false;
    std::size_t headSize = 0;
    std::string body = {};
};

/// Notes whether the head is complete: the library takes the end of the connection within it for its end.
/// Limits its size, as the library keeps every line of it.
std::size_t receiveHead(char* bytes, std::size_t, std::size_t count, void* answer) {
    const std::string_view line(bytes, count);
    auto& [isHeadWhole, headSize, body] = *static_cast<Answer*>(answer);
    if (count > largestHead - headSize) {
        return 0; // ends the transfer with an error
    }
    headSize += count;
    if (line.starts_with("HTTP/")) {
        isHeadWhole = false;
    } else if (line == "\r\n" || line == "\n") {
        isHeadWhole = true;
    }
    return count;
}

std::size_t receiveBody(char* bytes, std::size_t, std::size_t count, void* answer) {
    std::string& body = static_cast<Answer*>(answer)->body;
    if (count > largestAnswer - body.size()) {
        return 0; // ends the transfer with an error
    }
    try {
        body.append(bytes, count);
    } catch (const std::exception&) {
        return 0; // exceptions must not cross the library
    }
    return count;
}

Headers headersFor(const std::string& action) {
    Headers headers;
    // "Expect:" keeps the library from asking first whether to send the body: old servers do not answer that.
    for (const std::string& line : {std::string("Content-Type: text/xml; charset=utf-8"),
                                    "SOAPAction: \"" + action + "\"", std::string("Expect:")}) {
        curl_slist* const longer = curl_slist_append(headers.get(), line.c_str());
        if (!longer) {
            fail("no hay memoria para la petición");
        }
        static_cast<void>(headers.release());
        headers.reset(longer);
    }
    return headers;
}

template<typename Value>
void set(CURL* request, CURLoption option, Value value) {
    if (const CURLcode code = curl_easy_setopt(request, option, value); code != CURLE_OK) {
        fail(reasonOf(code));
    }
}

void prepare(CURL* request, const std::string& url, const std::string& body, curl_slist* headers,
             Answer& answer) {
    set(request, CURLOPT_URL, url.c_str());
    set(request, CURLOPT_PROTOCOLS_STR, "http,https");
    set(request, CURLOPT_REDIR_PROTOCOLS_STR, "http,https");
    set(request, CURLOPT_POSTFIELDS, body.data());
    set(request, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(body.size()));
    set(request, CURLOPT_HTTPHEADER, headers);
    set(request, CURLOPT_USERAGENT, curl_version());
    set(request, CURLOPT_FOLLOWLOCATION, 1L);
    set(request, CURLOPT_MAXREDIRS, mostRedirections);
    // The operation is in the request's text: a redirected request is sent again whole.
    set(request, CURLOPT_POSTREDIR, static_cast<long>(CURL_REDIR_POST_ALL));
    set(request, CURLOPT_MAXFILESIZE_LARGE, static_cast<curl_off_t>(largestAnswer));
    // The exchange has no time limit of its own; keep-alive still detects a lost peer.
    set(request, CURLOPT_TCP_KEEPALIVE, 1L);
    set(request, CURLOPT_NOSIGNAL, 1L);
    set(request, CURLOPT_HEADERFUNCTION, &receiveHead);
    set(request, CURLOPT_HEADERDATA, &answer);
    set(request, CURLOPT_WRITEFUNCTION, &receiveBody);
    set(request, CURLOPT_WRITEDATA, &answer);
}

/// A status other than 200 without a body means that the server did something other than answer.
bool isAnswer(long status, const std::string& body) {
    return status < firstRedirection && (status == okStatus || !body.empty());
}

/// Runs a prepared request to its end.
CURLcode perform(CURLM* multi, CURL* request, const std::function<void()>& whileWaiting) {
    if (const CURLMcode code = curl_multi_add_handle(multi, request); code != CURLM_OK) {
        fail(reasonOf(code));
    }
    const auto removal = [multi](CURL* handle) { curl_multi_remove_handle(multi, handle); };
    const std::unique_ptr<CURL, decltype(removal)> removed(request, removal);
    Clock::time_point turn = Clock::now();
    for (int running = 1; running > 0;) {
        CURLMcode code = curl_multi_perform(multi, &running);
        if (code == CURLM_OK && running > 0) {
            code = curl_multi_poll(multi, nullptr, 0, static_cast<int>(patience.count()), nullptr);
        }
        if (code != CURLM_OK) {
            fail(reasonOf(code));
        }
        // The pieces of an answer may arrive faster than a window can be painted.
        if (whileWaiting && Clock::now() >= turn) {
            whileWaiting();
            turn = Clock::now() + patience;
        }
    }
    int left = 0;
    const CURLMsg* const message = curl_multi_info_read(multi, &left);
    return message ? message->data.result : CURLE_RECV_ERROR;
}

} // namespace

std::string postSoap(const std::string& url, const std::string& action, const std::string& body,
                     const std::function<void()>& whileWaiting) {
    static const Library library;
    Answer answer;
    const Multi multi(curl_multi_init());
    const Easy request(curl_easy_init());
    if (!multi || !request) {
        fail("no se puede iniciar la conexión");
    }
    const Headers headers = headersFor(action);
    prepare(request.get(), url, body, headers.get(), answer);
    if (const CURLcode result = perform(multi.get(), request.get(), whileWaiting); result != CURLE_OK) {
        fail(reasonOf(result));
    }
    long status = 0;
    curl_easy_getinfo(request.get(), CURLINFO_RESPONSE_CODE, &status);
    if (!isAnswer(status, answer.body)) {
        fail("el servidor responde con el estado " + std::to_string(status));
    }
    if (!answer.isHeadWhole) {
        fail(reasonOf(CURLE_PARTIAL_FILE));
    }
    return std::move(answer.body);
}

} // namespace ambrel
