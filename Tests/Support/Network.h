#pragma once

#include "Tests/Support/RawServer.h"

#include <nlohmann/json_fwd.hpp>
#include <string>

/// Servers for the rows of Tests/Cases/network.json. A row says what the server does once it has
/// read a request: it "sends" bytes (the next item of a list for each request), sends more bytes
/// "late", a moment afterwards, or "again" until the client disconnects, stays "silent", "resets"
/// the connection, and so on. Then the connection ends, unless "always" keeps it open for further
/// requests for as long as there is something to send.
namespace Network {

/// Returns a server that responds to each request as the row says. In what it sends, "{port}"
/// stands for its own port and "{other}" for `otherPort`.
RawServer serve(const nlohmann::json& row, unsigned otherPort = 0);

/// Returns the identity of that name: "good" or another one that make-certificates.sh creates.
RawServer::Identity identityOf(const std::string& name, int maxVersion = 0);

/// Returns the path of an authority's certificate.
std::string trustedBy(const std::string& authority);

} // namespace Network
