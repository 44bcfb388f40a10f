#pragma once

#include "Base/QxBase10/HTTPRequest.h"
#include "Base/QxBase10/HTTPResponse.h"
#include "Host/HTTPClient/CurlHTTPClientSettings.h"
#include "Tests/Support/RawServer.h"
#include "Tests/Support/ScopedState.h"

#include <chrono>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <vector>

/// One thing that can happen between a client and a server, and how a request must end then: a row of
/// Tests/Cases/network.json. A row says what the server does once it has read a request (it "sends" bytes, sends others
/// "again" until the client goes, stays "silent", "resets" the connection and so on), what is changed of the request
/// and of the client's settings, and with what it "fails" and for what "reason", or with what "body" it does not.
class Circumstance {
public:
    explicit Circumstance(const nlohmann::json& row);

    /// What it shows, as a name.
    std::string name() const;

    /// A server that meets each request with it.
    RawServer serve() const;

    void change(Qx::HTTPRequest& request, OrvaneHost::CurlHTTPClientSettings& settings) const;

    /// What the server does once it has read the request of that number.
    void respond(RawServer::Connection& connection, std::size_t request) const;

    /// Fails the test if the response is another than the one that the row says.
    void expect(const Qx::HTTPResponse& response) const;

    /// Fails the test if the server has received anything but what the row says.
    void expectReceived(const std::string& requests) const;

    /// Lets the process use the row's proxy, if it names one; "{server}" is the server itself.
    std::optional<ScopedState> useProxy(const RawServer& server) const;

    /// How long the request may take.
    std::chrono::milliseconds limit() const;

    /// Whether the request is to reach no server at all.
    bool isRefused() const;

private:
    template <class Value>
    Value value(const char* key, const Value& otherwise) const;

    std::shared_ptr<const nlohmann::json> row_;
};

namespace Network {

const std::vector<Circumstance>& circumstances();

/// Meets a request for "/N" with the circumstance of that number, and others with a good response.
void serveByPath(RawServer::Connection& connection);

/// The identity of that name: "good" and others, as make-certificates.sh makes them.
RawServer::Identity identityOf(const std::string& name, int maxVersion = 0);

/// The path of an authority's certificate.
std::string trustedBy(const std::string& authority);

} // namespace Network
