// Listens and answers.
#include "tools/callejero/Service.h"

#include <algorithm>
#include <cerrno>
#include <stdexcept>
#include <utility>

#include <sys/socket.h>
#include <unistd.h>

#include "dbase/system/names.h"
#include "dbase/system/system_reason.h"
#include "tools/callejero/Connection.h"

namespace callejero {
namespace {

constexpr const char* host = "127.0.0.1";
constexpr const char* answerType = "text/xml; charset=utf-8";
constexpr const char* plainType = "text/plain; charset=utf-8";
constexpr int redirection = 302, badRequest = 400, notFound = 404, serverFailure = 500;
constexpr std::size_t largestRequest = std::size_t{1} << 20;
constexpr std::size_t hugeSize = std::size_t{1} << 30;

/// The library's default would let two servers share a port.
void reuseAddress(socket_t socket) {
    const int yes = 1;
    setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
}

/// The service ignores case in its path.
bool isServicePath(const std::string& path) { return dbase::sameName(path, servicePath); }

/// Sends half the announced body and ends the connection.
void cut(const std::string& text, httplib::Response& response) {
    response.set_content_provider(text.size(), answerType,
                                  [text](std::size_t, std::size_t, httplib::DataSink& sink) {
                                      sink.write(text.data(), text.size() / 2);
                                      return false;
                                  });
}

void cutChunked(const std::string& text, httplib::Response& response) {
    response.set_chunked_content_provider(answerType, [text](std::size_t, httplib::DataSink& sink) {
        sink.write(text.data(), text.size() / 2);
        return false;
    });
}

const std::string& ballast() {
    static const std::string blanks(std::size_t{1} << 16, ' ');
    return blanks;
}

} // namespace

void Listener::hangUp() {
    const std::lock_guard lock(mutex_);
    isHungUp_ = true;
    for (const socket_t socket : open_) {
        ::shutdown(socket, SHUT_RDWR);
    }
}

bool Listener::process_and_close_socket(socket_t socket) {
    {
        const std::lock_guard lock(mutex_);
        open_.insert(socket);
        if (isHungUp_) { // this connection came in at the last moment
            ::shutdown(socket, SHUT_RDWR);
        }
    }
    bool isClosed = false, isDone = false;
    {
        Connection connection(socket);
        isDone = process_request(connection, true, isClosed, {});
        if (isDone) {
            ::shutdown(socket, SHUT_WR);
        }
    }
    const std::lock_guard lock(mutex_);
    open_.erase(socket);
    ::close(socket);
    return isDone;
}

Service::Service(std::unique_ptr<const Directory> directory, int port, Conduct& conduct)
    : directory_(std::move(directory)), conduct_(conduct) {
    listener_.set_socket_options(reuseAddress);
    listener_.set_payload_max_length(largestRequest);
    listener_.Post(".*", [this](const httplib::Request& request, httplib::Response& response) {
        serve(request, response);
    });
    errno = 0;
    port_ = port == 0 ? listener_.bind_to_any_port(host) : port;
    if (port == 0 ? port_ <= 0 : !listener_.bind_to_port(host, port)) {
        throw std::runtime_error("no se puede escuchar en el puerto " + std::to_string(port) +
                                 (errno == 0 ? "" : ": " + dbase::systemReason(errno)));
    }
    thread_ = std::thread([this] { listener_.listen_after_bind(); });
    while (!listener_.is_running()) { // a server stopped before it runs would never end
        std::this_thread::yield();
    }
}

void Service::stop() {
    conduct_.end();
    listener_.stop();
    listener_.hangUp();
    if (thread_.joinable()) {
        thread_.join();
    }
}

void Service::serve(const httplib::Request& request, httplib::Response& response) {
    if (!isServicePath(request.path)) {
        refuse("no hay nada en " + request.path, notFound, response);
        return;
    }
    try {
        if (request.has_header("Expect")) {
            throw WrongRequest("sobra la cabecera Expect");
        }
        const Request read = readRequest({.contentType = request.get_header_value("Content-Type"),
                                          .soapAction = request.get_header_value("SOAPAction"),
                                          .body = request.body});
        const Conduct::Noted noted = conduct_.note(read);
        conduct_.takeTime();
        answer(read, noted, response);
    } catch (const WrongRequest& wrong) {
        refuse(wrong.what(), badRequest, response);
    }
}

void Service::refuse(const std::string& reason, int status, httplib::Response& response) {
    conduct_.complain(reason);
    response.status = status;
    response.set_content(reason + "\n", plainType);
}

std::string Service::answerText(const Request& request) const {
    const Operation operation = request.operation;
    if (operation == Operation::Provinces) {
        return directory_->provinces();
    }
    if (request.province.empty()) {
        return errorAnswer(operation, provinceNeeded);
    }
    if (operation == Operation::Municipalities) {
        return directory_->municipalities(request.province);
    }
    if (request.municipality.empty()) {
        return errorAnswer(operation, municipalityNeeded);
    }
    return directory_->streets(request.province, request.municipality);
}

/// Waits until release(), the service's end or the peer's; false when the service ends.
bool Service::hold(unsigned releases) {
    return conduct_.hold(releases, [] { return Connection::current().peerIsThere(); });
}

void Service::stallMidway(const std::string& text, unsigned releases, httplib::Response& response) {
    response.set_content_provider(
        text.size(), answerType,
        [this, text, releases](std::size_t at, std::size_t left, httplib::DataSink& sink) {
            if (at == 0) {
                return sink.write(text.data(), left / 2);
            }
            return hold(releases) && sink.write(text.data() + at, left);
        });
}

bool Service::sendBallast(std::size_t size, httplib::DataSink& sink) {
    const std::size_t sent = std::min(size, ballast().size());
    if (!sink.write(ballast().data(), sent)) {
        return false;
    }
    conduct_.countHuge(sent);
    return true;
}

void Service::sendHuge(httplib::Response& response) {
    response.set_content_provider(
        hugeSize, answerType,
        [this](std::size_t, std::size_t left, httplib::DataSink& sink) { return sendBallast(left, sink); });
}

void Service::sendHugeChunked(httplib::Response& response) {
    response.set_chunked_content_provider(answerType, [this](std::size_t sent, httplib::DataSink& sink) {
        if (sent < hugeSize) {
            return sendBallast(hugeSize - sent, sink);
        }
        sink.done();
        return true;
    });
}

void Service::answer(const Request& request, const Conduct::Noted& noted, httplib::Response& response) {
    if (!request.isXml()) {
        response.status = serverFailure;
        response.set_content(soapFault("La petición no es un documento XML."), answerType);
        return;
    }
    const std::string text = spoil(answerText(request), request.operation, noted.fault);
    switch (noted.fault) {
    case Fault::Refuse:
        Connection::current().refuse();
        return;
    case Fault::Cut:
        cut(text, response);
        return;
    case Fault::CutChunked:
        cutChunked(text, response);
        return;
    case Fault::Huge:
        sendHuge(response);
        return;
    case Fault::HugeChunked:
        sendHugeChunked(response);
        return;
    case Fault::StallMidway:
        stallMidway(text, noted.releases, response);
        return;
    case Fault::Status500:
        response.status = serverFailure;
        response.set_content(text, plainType);
        return;
    case Fault::HtmlPage:
        response.set_content(text, "text/html");
        return;
    case Fault::SoapFault:
        response.status = serverFailure;
        break;
    case Fault::Redirection:
        response.status = redirection;
        return;
    case Fault::Stall:
        if (!hold(noted.releases)) {
            Connection::current().refuse();
        }
        break;
    default:
        break;
    }
    response.set_content(text, answerType);
}

} // namespace callejero
