#include "Tests/Support/Network.h"

#include "Tests/Support/Cases.h"
#include "Tests/Support/ProcessResources.h"

#include <atomic>
#include <boost/algorithm/string/replace.hpp>
#include <chrono>
#include <limits>
#include <memory>
#include <nlohmann/json.hpp>
#include <openssl/ssl.h>
#include <thread>

namespace {

using nlohmann::json;
using Connection = RawServer::Connection;

void sendAgain(Connection& connection, const json& row, std::chrono::milliseconds pause) {
    std::string again;
    for (int times = row.value("times", 1); times > 0; --times)
        again += bytesOf(row["again"]);
    while (connection.send(again))
        std::this_thread::sleep_for(pause);
}

// Returns the bytes that the row sends to the request with that number.
std::string bytesFor(const json& row, std::size_t request, unsigned port, unsigned otherPort) {
    const json sends = row.value("sends", json(""));
    std::string bytes = bytesOf(sends.is_array() ? sends.at(request % sends.size()) : sends);
    boost::replace_all(bytes, "{port}", std::to_string(port));
    boost::replace_all(bytes, "{other}", std::to_string(otherPort));
    return bytes + std::string(row.value("fillMiB", std::size_t{0}) << 20, 'x');
}

// Does what the row says once the server has read a request. `requests` is the number of requests
// before it, and is incremented for each.
void respond(const json& row, Connection& connection, std::atomic<std::size_t>& requests, unsigned otherPort) {
    const std::chrono::milliseconds pause(row.value("pauseMs", 0));
    std::string bytes;
    do {
        if (row.contains("always"))
            std::this_thread::sleep_for(pause);
        bytes = bytesFor(row, requests++, connection.port(), otherPort);
        connection.send(bytes);
        if (row.contains("late")) {
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            connection.send(bytesOf(row["late"]));
        }
    } while (row.contains("always") && !bytes.empty() && !connection.readRequest().empty());
    if (row.contains("again"))
        sendAgain(connection, row, pause);
    if (row.contains("silent"))
        Serving::silently(connection);
    if (row.contains("resets"))
        connection.reset();
    if (row.contains("cuts"))
        connection.cut();
}

// Reads the next request over HTTP/2 and returns its stream, or 0 if there is none.
char readStream(Connection& connection) {
    constexpr char headers = 1;
    for (std::string frame = connection.read(9); frame.size() == 9; frame = connection.read(9)) {
        connection.read(static_cast<unsigned char>(frame[1]) * 256U + static_cast<unsigned char>(frame[2]));
        if (frame[3] == headers)
            return frame[8];
    }
    return 0;
}

// Answers each request over HTTP/2 with the row's frames, each of which has a type, flags and a
// payload.
void respondInFrames(const json& row, Connection& connection) {
    const auto send = [&](const json& frame, char stream) {
        const std::string payload = bytesOf(frame.at(2));
        const std::string head{0,
                               static_cast<char>(payload.size() / 256),
                               static_cast<char>(payload.size() % 256),
                               frame.at(0).get<char>(),
                               frame.at(1).get<char>(),
                               0,
                               0,
                               0,
                               stream};
        return connection.send(head + payload);
    };
    send({4, 0, ""}, 0);
    connection.read(std::string_view("PRI * HTTP/2.0\r\n\r\nSM\r\n\r\n").size());
    int streams = row.value("streams", std::numeric_limits<int>::max());
    while (const char stream = readStream(connection)) {
        if (streams-- <= 0)
            continue;
        for (const json& frame : row["frames"])
            send(frame, stream);
        while (row.contains("againFrame") && send(row["againFrame"], 0)) {
        }
        if (row.contains("cuts"))
            return connection.cut();
    }
}

// OpenSSL reads its configuration when it is first used: in these tests, that of a system that
// permits everything.
const auto permissive = scopedVariable("OPENSSL_CONF", TEST_SOURCES "/Support/permissive-openssl.cnf");

} // namespace

namespace Network {

RawServer serve(const json& row, unsigned otherPort) {
    if (!row.value("accepts", true))
        return RawServer(nullptr);
    const auto requests = std::make_shared<std::atomic<std::size_t>>(0);
    const auto serveOne = [row, otherPort, requests](Connection& connection) {
        if (row.contains("frames"))
            respondInFrames(row, connection);
        else if (row.contains("raw") || !connection.readRequest().empty())
            respond(row, connection, *requests, otherPort);
    };
    if (!row.contains("certificate"))
        return RawServer(serveOne);
    const std::map<std::string, int> versions{{"", 0}, {"1.1", TLS1_1_VERSION}, {"1.2", TLS1_2_VERSION}};
    RawServer::Identity identity = identityOf(row["certificate"], versions.at(row.value("version", "")));
    identity.offersHTTP2 = row.contains("offersHTTP2");
    return RawServer(serveOne, identity);
}

RawServer::Identity identityOf(const std::string& name, int maxVersion) {
    return {TEST_CERTIFICATES "/" + name + ".pem", TEST_CERTIFICATES "/" + name + ".key", maxVersion};
}

std::string trustedBy(const std::string& authority) {
    return TEST_CERTIFICATES "/" + authority + ".pem";
}

} // namespace Network
