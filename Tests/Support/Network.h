#pragma once

#include "Tests/Support/RawServer.h"

#include <nlohmann/json_fwd.hpp>
#include <string>

/// Servers as the rows of Tests/Cases/network.json want them. A row says what the server does once it has read a
/// request: it "sends" bytes (of a list each request gets the next), sends others "late", a moment after, or "again"
/// until the client goes, stays "silent", "resets" the connection and so on. The connection ends then, unless it is
/// "always" kept for another request, for as long as there is something to send.
namespace Network {

/// A server that meets each request as the row says. In what it sends, "{port}" is its own port, "{other}" another.
RawServer serve(const nlohmann::json& row, unsigned otherPort = 0);

/// The identity of that name: "good" and others, as make-certificates.sh makes them.
RawServer::Identity identityOf(const std::string& name, int maxVersion = 0);

/// The path of an authority's certificate.
std::string trustedBy(const std::string& authority);

} // namespace Network
