//
// EditorServer.cpp
//

#include "EditorServer.h"

#include <Poco/Net/HTTPRequestHandler.h>
#include <Poco/Net/HTTPRequestHandlerFactory.h>
#include <Poco/Net/HTTPServer.h>
#include <Poco/Net/HTTPServerParams.h>
#include <Poco/Net/HTTPServerRequest.h>
#include <Poco/Net/HTTPServerResponse.h>
#include <Poco/Net/ServerSocket.h>
#include <Poco/Net/SocketAddress.h>

namespace zunokeymap {
namespace editor {

namespace {

class ApiHandler : public Poco::Net::HTTPRequestHandler {
public:
    explicit ApiHandler(EditorApi& api) : api_(api) {}

    void handleRequest(Poco::Net::HTTPServerRequest& in,
                       Poco::Net::HTTPServerResponse& out) override {
        HttpRequest request;
        request.method = in.getMethod();
        request.target = in.getURI();
        for (const auto& header : in) {
            request.headers.emplace_back(header.first, header.second);
        }
        const HttpResponse screened = api_.screen(request);
        bool bodyRead = false;
        if (screened.status == 0) {
            // One byte past the limit is enough to know the body is too long.
            std::istream& body = in.stream();
            std::string chunk(65536, '\0');
            while (request.body.size() <= EditorApi::kMaxBody) {
                body.read(&chunk[0], static_cast<std::streamsize>(chunk.size()));
                const auto got = static_cast<std::size_t>(body.gcount());
                request.body.append(chunk, 0, got);
                if (got < chunk.size()) {
                    break;
                }
            }
            bodyRead = request.body.size() <= EditorApi::kMaxBody;
        }
        const HttpResponse response = api_.handle(request);

        out.setStatus(static_cast<Poco::Net::HTTPResponse::HTTPStatus>(response.status));
        for (const auto& header : response.headers) {
            out.set(header.first, header.second);
        }
        if (!bodyRead && (in.hasContentLength() || in.getChunkedTransferEncoding())) {
            out.setKeepAlive(false);  // the rest of the body is still on the wire
        }
        out.setContentLength64(static_cast<Poco::Int64>(response.body.size()));
        out.sendBuffer(response.body.data(), response.body.size());
    }

private:
    EditorApi& api_;
};

class ApiHandlerFactory : public Poco::Net::HTTPRequestHandlerFactory {
public:
    explicit ApiHandlerFactory(EditorApi& api) : api_(api) {}

    Poco::Net::HTTPRequestHandler* createRequestHandler(
        const Poco::Net::HTTPServerRequest&) override {
        return new ApiHandler(api_);
    }

private:
    EditorApi& api_;
};

}  // namespace

EditorServer::EditorServer(EditorApi& api, int port) {
    Poco::Net::ServerSocket socket;
    socket.bind(Poco::Net::SocketAddress("127.0.0.1", static_cast<Poco::UInt16>(port)), false);
    socket.listen(64);
    port_ = socket.address().port();
    api.setPort(port_);

    Poco::Net::HTTPServerParams::Ptr params = new Poco::Net::HTTPServerParams();
    params->setMaxThreads(16);
    params->setMaxQueued(256);
    params->setKeepAlive(true);
    params->setKeepAliveTimeout(Poco::Timespan(5, 0));
    params->setTimeout(Poco::Timespan(30, 0));
    server_.reset(new Poco::Net::HTTPServer(new ApiHandlerFactory(api), socket, params));
}

EditorServer::~EditorServer() {
    stop();
}

void EditorServer::start() {
    server_->start();
}

void EditorServer::stop() {
    if (server_) {
        server_->stopAll(true);
    }
}

}  // namespace editor
}  // namespace zunokeymap
