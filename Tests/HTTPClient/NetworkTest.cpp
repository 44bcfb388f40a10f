// Misbehaving servers and networks, tested with both execution types: the rows of
// Tests/Cases/network.json. Besides what the server does (see Network.h), a row specifies
//
// - how the request and the client's options differ from the defaults ("bindsToken": the token is
//   only for this server; "tokens": what the token source returns, one after the other, where null
//   makes it throw),
// - what the requests contain ("receives") and do not contain ("mustNotReceive"), the number of "exchanges",
//   the arguments of the calls to the token source ("tokenSourceCalls"), and the "protocol",
// - the kind of failure with which the request "fails" and its "reason", or the "status", "headers"
//   and "body" of the response,
// - what differs on Windows ("onWindows"), or why the row is left out there ("skipReason").

#include "Tests/Support/Network.h"
#include "Testing/ScopedState.h"
#include "Tests/Support/Cases.h"
#include "Tests/Support/ProcessResources.h"
#include "Tests/Support/Sending.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cctype>
#include <cstdlib>
#include <gtest/gtest.h>
#include <iostream>
#include <locale>
#include <memory>
#include <nlohmann/json.hpp>
#include <random>
#include <stdexcept>

namespace {

using nlohmann::json;
using namespace Orvane::Testing;
using Qx::CurlHTTPClient;
using Qx::CurlHTTPClientOptions;
using Qx::HTTPRequest;
using Qx::HTTPResponse;
using Type = HTTPRequest::ExecutionType;
using namespace std::chrono_literals;

constexpr std::size_t mebibyte = std::size_t{1} << 20;

const json& rows() {
    static const json all = casesOf("network.json", TEST_SYSTEM);
    return all;
}

std::string nameOf(const json& row) {
    std::string name = row.at("shows");
    const auto isOdd = [](unsigned char letter) { return std::isalnum(letter) == 0; };
    std::replace_if(name.begin(), name.end(), isOdd, '_');
    return name;
}

// Whether the client must refuse to send the request at all, rather than to follow a redirect that
// the server "sends".
bool isRefused(const json& row) {
    return row.value("fails", json()) == "REFUSED" && !row.contains("sends");
}

HTTPRequest requestOf(const json& row, const std::string& url, Type type, const HTTPRequest::Callback& callback) {
    HTTPRequest request = makeRequest(url, type, callback);
    if (row.value("method", "GET") == "POST")
        request.setMethod(HTTPRequest::Method::POST);
    request.setURL(bytesOf(row.value("url", url + row.value("path", ""))));
    if (row.contains("secure"))
        request.setURL("https" + request.getURL().substr(4));
    if (row.contains("header"))
        request.setHeader(row["header"][0], row["header"][1]);
    if (!row.value("bearer", true))
        request.setAuthType(HTTPRequest::AuthType::NONE);
    return request;
}

// Returns a token source that returns the tokens one after the other, repeats the last, and records
// its arguments.
auto tokenSource(const json& tokens, json& asked) {
    return [&tokens, &asked](const std::string& refusedToken) {
        const json& next = tokens.at(std::min(asked.size(), tokens.size() - 1));
        asked.push_back(refusedToken);
        return next.is_null() ? throw std::runtime_error("no\nsign-in") : next.get<std::string>();
    };
}

CurlHTTPClientOptions optionsOf(const json& row, const RawServer& server) {
    CurlHTTPClientOptions made = clientOptions();
    made.maxRetries = row.value("retries", 0);
    made.retryDelay = std::chrono::milliseconds(row.value("retryDelayMs", 20));
    made.userAgent = row.value("userAgent", "");
    if (const std::string proxy = row.value("givenProxy", "none"); proxy != "none")
        made.proxy = proxy.empty() ? "" : server.url("").insert(7, proxy + '@');
    made.token = row.value("token", made.token);
    made.tokenOrigins = row.value("tokenOrigins", made.tokenOrigins);
    if (row.contains("bindsToken"))
        made.tokenOrigins = {server.url("/orvanedm")};
    const bool fails = row.contains("fails");
    made.connectTimeout = std::chrono::milliseconds(row.value("connectTimeoutMs", fails ? 500 : 30'000));
    made.requestTimeout = std::chrono::milliseconds(row.value("requestTimeoutMs", fails ? 1500 : 30'000));
    made.stallTimeout = 1s;
    made.maxBodyBytes = row.value("maxBodyMiB", made.maxBodyBytes / mebibyte) * mebibyte;
    made.maxBodyBytes = row.value("maxBodyBytes", made.maxBodyBytes);
    made.maxRedirects = row.value("maxRedirects", made.maxRedirects);
    if (row.contains("trusts"))
        made.certificateFile = Network::trustedBy(row["trusts"]);
    return made;
}

// Sets the proxy in the environment; "{server}" stands for the server itself.
std::vector<ScopedState> useProxy(const json& row, const RawServer& server) {
    std::vector<ScopedState> variables;
    if (!row.contains("proxy"))
        return variables;
    const std::string proxy = row["proxy"] == "{server}" ? server.url("") : row["proxy"].get<std::string>();
    for (const char* variable : {"http_proxy", "https_proxy"})
        variables.push_back(scopedVariable(variable, proxy));
    return variables;
}

// The names of the kinds of failure, in the order of the enumerators.
constexpr std::array kinds{"",          "REFUSED", "NETWORK",      "TLS", "TIMEOUT", "TOO_LARGE", "MALFORMED_RESPONSE",
                           "CANCELLED", "CLOSED",  "OUT_OF_MEMORY"};

void expectResponse(const json& row, const HTTPResponse& response) {
    const std::string& reason = response.getReason();
    const json fails = row.value("fails", json(""));
    const json possible = fails.is_array() ? fails : json::array({fails}); // Timing decides between several.
    const std::string kind = kinds.at(static_cast<std::size_t>(response.getFailureKind()));
    EXPECT_NE(std::find(possible.begin(), possible.end(), kind), possible.end()) << kind << reason;
    EXPECT_EQ(response.getStatus(), row.contains("fails") ? 0 : row.value("status", 200));
    EXPECT_EQ(response.getBody(), row.value("body", ""));
    const json headers = row.value("headers", json::object());
    for (const auto& [name, value] : headers.items())
        EXPECT_EQ(response.getHeader(name), value) << name;
    EXPECT_NE(reason.find(row.value("reason", "")), std::string::npos) << reason;
    EXPECT_EQ(reason.find_first_of("\r\n"), std::string::npos);
    EXPECT_EQ(reason.find("secret"), std::string::npos) << reason;
}

// The parts in "receives" must occur in that order, those in "mustNotReceive" must occur in no request, and
// those in "lacksAtLast" must not occur in the last.
void expectReceived(const json& row, const std::string& requests) {
    EXPECT_EQ(firstMissingPart(requests, row.value("receives", std::vector<std::string>())), "") << requests;
    for (const std::string part : row.value("mustNotReceive", json::array()))
        EXPECT_EQ(requests.find(part), std::string::npos) << requests;
    const std::size_t last = requests.rfind(" HTTP/1.1\r\n");
    for (const std::string part : row.value("lacksAtLast", json::array()))
        EXPECT_EQ(requests.find(part, last), std::string::npos) << requests;
    if (isRefused(row) || row.contains("exchanges")) {
        EXPECT_EQ(countExchanges(requests), row.value("exchanges", 0)) << requests;
    }
}

// A locale that an application may set, in which "i" and "I" are not the same letter, as in
// Turkish.
struct TurkishLetters : std::ctype<char> {
    char do_toupper(char letter) const override { return letter == 'i' ? letter : ctype::do_toupper(letter); }
    char do_tolower(char letter) const override { return letter == 'I' ? letter : ctype::do_tolower(letter); }
};

class NetworkTest : public testing::TestWithParam<std::size_t> {};
INSTANTIATE_TEST_SUITE_P(Of, NetworkTest, testing::Range<std::size_t>(0, rows().size()),
                         [](const auto& tested) { return nameOf(rows()[tested.param]); });

// Sends as many requests as the row says, and then one to a good server. Counts the completions of
// the former, including late ones.
void meet(const json& row, Type type, std::atomic<int>& completions) {
    const RawServer good(Serving::well);
    const RawServer server = Network::serve(row, good.port());
    const auto proxy = useProxy(row, server);
    CurlHTTPClientOptions changed = optionsOf(row, server);
    json asked = json::array();
    if (row.contains("tokens"))
        changed.tokenSource = tokenSource(row["tokens"], asked);
    Qx::HTTPAttempt last;
    changed.onAttempt = [&](const Qx::HTTPAttempt& attempt) { last = attempt; };
    const PeakMemory memory;
    CurlHTTPClient client(changed);
    const int requests = row.value("requests", 1);
    for (int number = 1; number <= requests; ++number) {
        std::promise<HTTPResponse> answered;
        HTTPRequest request = requestOf(row, server.url("/"), type, [&, number](const HTTPResponse& response) {
            if (++completions == number)
                answered.set_value(response);
        });
        const auto start = std::chrono::steady_clock::now();
        client.queueRequest(request);
        const HTTPResponse response = answered.get_future().get();
        const auto taken = std::chrono::steady_clock::now() - start;
        EXPECT_LT(taken, std::chrono::milliseconds(row.value("withinMs", 60'000)));
        EXPECT_GE(taken, std::chrono::milliseconds(row.value("atLeastMs", 0)));
        // Of several requests, only one fails.
        if (number != row.value("failsAt", requests) && row.contains("fails"))
            EXPECT_EQ(response.getStatus(), 200);
        else
            expectResponse(row, response);
        if (number < requests)
            std::this_thread::sleep_for(100ms);
    }
    expectReceived(row, server.received());
    EXPECT_EQ(asked, row.value("tokenSourceCalls", asked));
    EXPECT_EQ(last.protocol, row.value("protocol", last.protocol));
    EXPECT_EQ(last.isConnectionReused, row.value("isReused", last.isConnectionReused));
    EXPECT_LT(memory.growth(), changed.maxBodyBytes + 64 * mebibyte);
    HTTPRequest next = makeRequest(good.url("/"), Type::CALLING_THREAD);
    next.setAuthType(HTTPRequest::AuthType::NONE);
    EXPECT_EQ(send(client, next).getBody(), "{}") << "the client still works";
    EXPECT_EQ(good.received().find("uthorization"), std::string::npos) << "no token of the previous request";
    EXPECT_EQ(good.received().find("secret"), std::string::npos) << "nothing meant for the first server";
}

TEST_P(NetworkTest, CompletesOnceAsExpectedAndLeaksNothing) {
    const std::locale before = std::locale::global(std::locale(std::locale(), new TurkishLetters));
    const ScopedState letters = ScopedState([&] { std::locale::global(before); });
    const json& row = rows()[GetParam()];
    if (row.contains("skipReason"))
        GTEST_SKIP() << row["skipReason"];
    const auto descriptors = countDescriptors();
    const auto threads = countThreads();
    for (const Type type : {Type::CALLING_THREAD, Type::CLIENT_THREAD}) {
        std::atomic<int> completions = 0;
        meet(row, type, completions);
        EXPECT_EQ(completions, row.value("requests", 1)) << static_cast<int>(type);
    }
    expectNoMore(countDescriptors, descriptors);
    expectNoMore(countThreads, threads);
}

// Sends requests with one client to the servers of all rows, and to a good one, over and over for
// SOAK_SECONDS seconds (3 by default). The client uses no proxy, and has one token and one list of
// certificates.
TEST(Soak, CompletesEveryRequestWithoutGrowing) {
    if (std::string(TEST_SYSTEM) == "Windows")
        GTEST_SKIP() << "the servers can't end connections that a client keeps open, and heap use can't be measured";
    const char* wanted = std::getenv("SOAK_SECONDS");
    const std::chrono::milliseconds time = std::chrono::seconds(wanted ? std::atoi(wanted) : 3);
    CurlHTTPClientOptions hurried = clientOptions();
    hurried.connectTimeout = hurried.requestTimeout = 300ms;
    hurried.stallTimeout = 1s;
    hurried.maxBodyBytes = mebibyte;
    hurried.certificateFile = Network::trustedBy("authority");
    CurlHTTPClient client(hurried);
    std::atomic<std::size_t> requests = 0;
    std::atomic<std::size_t> completions = 0;
    std::atomic<std::size_t> successes = 0;

    const auto sendFor = [&](std::chrono::milliseconds duration) {
        const RawServer good(Serving::well);
        std::vector<std::unique_ptr<const RawServer>> servers;
        for (const json& row : rows())
            servers.emplace_back(new RawServer(Network::serve(row, good.port())));
        const auto end = std::chrono::steady_clock::now() + duration;
        const auto sendUntilEnd = [&](unsigned seed) {
            std::mt19937 random(seed);
            while (std::chrono::steady_clock::now() < end) {
                const Type type = random() % 2 == 0 ? Type::CALLING_THREAD : Type::CLIENT_THREAD;
                std::vector<HTTPRequest> batch;
                while (batch.size() < 64) {
                    const std::size_t index = random() % (4 * rows().size());
                    const bool isGood = index >= rows().size() || rows()[index].contains("proxy");
                    const json& row = isGood ? json::object() : rows()[index];
                    const RawServer& server = isGood ? good : *servers[index];
                    batch.push_back(requestOf(row, server.url("/"), type, [&](const auto&) { ++completions; }));
                }
                requests += batch.size();
                for (const HTTPResponse& response : sendAll(client, batch, type))
                    successes += response.isSuccessful() ? 1 : 0;
            }
        };
        std::vector<std::future<void>> threads;
        for (unsigned seed = 0; seed < 4; ++seed)
            threads.push_back(std::async(std::launch::async, sendUntilEnd, seed));
    };
    // Sends as many requests at once as the client may have connections, so that it keeps none to
    // servers that no longer exist.
    const auto settle = [&] {
        const RawServer last([](RawServer::Connection& connection) {
            std::this_thread::sleep_for(100ms);
            Serving::well(connection);
        });
        const std::vector<HTTPRequest> batch(hurried.maxConnections, makeRequest(last.url("/"), Type::CLIENT_THREAD));
        sendAll(client, batch, Type::CLIENT_THREAD);
    };

    // The first half also fills the caches of the client and of the C library before anything is
    // compared.
    sendFor(time / 2);
    settle();
    const auto descriptors = countDescriptors();
    const std::size_t usedFirst = heapInUse();
    sendFor(time / 2);
    settle();
    const std::size_t used = heapInUse();
    std::cout << requests << " requests, " << successes << " of them successes; " << usedFirst / 1024
              << " KiB of heap in use at first, " << used / 1024 << " KiB at the end\n";
    EXPECT_EQ(completions, requests);
    EXPECT_TRUE(successes > 0 && successes < requests);
    expectNoMore(countDescriptors, descriptors);
    // The cache of TLS sessions may have grown, but must not keep growing.
    EXPECT_LE(used, usedFirst + mebibyte / 4);
}

} // namespace
