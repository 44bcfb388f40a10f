// What servers and networks do to a client, in both ways to ask it.

#include "Base/QxBaseCore10/Strings.h"
#include "Server/Orvane/FolderContentLink.h"
#include "Server/Orvane/Orvanedm.h"
#include "Tests/Host/HTTPClient/Sending.h"
#include "Tests/Support/FailingCalls.h"
#include "Tests/Support/Faults.h"
#include "Tests/Support/PeakMemory.h"
#include "Tests/Support/ScopedState.h"
#include "Tests/Support/TestServer.h"

#include <atomic>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fmt/format.h>
#include <gtest/gtest.h>
#include <locale>
#include <openssl/ssl.h>
#include <tuple>
#include <zlib.h>

namespace {

using OrvaneHost::CurlHTTPClient;
using OrvaneHost::CurlHTTPClientSettings;
using Qx::HTTPRequest;
using Qx::HTTPResponse;
using Type = HTTPRequest::ExecutionType;
using FailureKind = HTTPResponse::FailureKind;
using namespace std::chrono_literals;

CurlHTTPClientSettings impatient() {
    CurlHTTPClientSettings made = settings();
    made.connectTimeout = 500ms;
    made.requestTimeout = 1500ms;
    made.stallTimeout = 1s;
    return made;
}

const char* nameOf(Type type) {
    return type == Type::CALLING_THREAD ? "CallingThread" : "ClientThread";
}

// Sends a request that must fail. The completions are counted for as long as there may be any.
void expectFailure(CurlHTTPClient& client, const std::string& url, Type type,
                   const std::shared_ptr<std::atomic<int>>& completions) {
    const auto answered = std::make_shared<std::promise<HTTPResponse>>();
    HTTPRequest request = makeRequest(url, type, [answered, completions](const HTTPResponse& response) {
        if (++*completions == 1)
            answered->set_value(response);
    });
    *completions = 0;
    client.queueRequest(request);
    const HTTPResponse response = answered->get_future().get();
    EXPECT_FALSE(response.isSuccessful());
    EXPECT_EQ(response.getStatus(), 0);
    EXPECT_FALSE(response.getReason().empty());
    EXPECT_EQ(response.getReason().find_first_of("\r\n"), std::string::npos);
    EXPECT_EQ(response.getReason().find(token), std::string::npos);
}

// A host's locale in which "i" and "I" are not the same letter, as in Turkish.
class ScopedTurkishLetters {
public:
    ScopedTurkishLetters(const ScopedTurkishLetters&) = delete;
    ScopedTurkishLetters& operator=(const ScopedTurkishLetters&) = delete;
    ScopedTurkishLetters() : before_(std::locale::global(std::locale(std::locale(), new Letters))) {}
    ~ScopedTurkishLetters() { std::locale::global(before_); }

private:
    struct Letters : std::ctype<char> {
        char do_toupper(char letter) const override { return letter == 'i' ? letter : ctype::do_toupper(letter); }
        char do_tolower(char letter) const override { return letter == 'I' ? letter : ctype::do_tolower(letter); }
    };

    const std::locale before_;
};

class HostileNetworkWithFault : public testing::TestWithParam<std::tuple<std::size_t, Type>> {};

TEST_P(HostileNetworkWithFault, AnswersOnceWithAReasonAndGoesOn) {
    const auto [fault, type] = GetParam();
    const ScopedTurkishLetters letters;
    const RawServer server(Faults::serving(Faults::all()));
    const auto completions = std::make_shared<std::atomic<int>>();
    {
        CurlHTTPClient client(impatient());
        expectFailure(client, server.url('/' + std::to_string(fault)), type, completions);
        EXPECT_EQ(send(client, server.url("/good")).getBody(), "{}") << "the client is as good as before";
    }
    EXPECT_EQ(*completions, 1);
}

INSTANTIATE_TEST_SUITE_P(Of, HostileNetworkWithFault,
                         testing::Combine(testing::Range<std::size_t>(0, Faults::all().size()),
                                          testing::Values(Type::CALLING_THREAD, Type::CLIENT_THREAD)),
                         [](const auto& tested) {
                             return Faults::all()[std::get<0>(tested.param)].name + "In" +
                                    nameOf(std::get<1>(tested.param));
                         });

class HostileNetworkInBothTypes : public testing::TestWithParam<Type> {};
INSTANTIATE_TEST_SUITE_P(In, HostileNetworkInBothTypes, testing::Values(Type::CALLING_THREAD, Type::CLIENT_THREAD),
                         [](const auto& tested) { return nameOf(tested.param); });

TEST_P(HostileNetworkInBothTypes, ServersThatAreNotThere) {
    const RawServer full(nullptr);
    CurlHTTPClient client(impatient());
    HTTPRequest filler = makeRequest(full.url("/"), Type::CLIENT_THREAD);
    for (int i = 0; i < 4; ++i)
        client.queueRequest(filler);
    for (const std::string& url :
         {std::string("http://127.0.0.1:1/"), std::string("https://no-such-host.invalid/"), full.url("/")})
        expectFailure(client, url, GetParam(), std::make_shared<std::atomic<int>>());
}

RawServer::Serve endless(std::string first, std::string again) {
    return [=](const RawServer::Connection& connection) {
        connection.readRequest();
        Faults::repeating(first, again, 0ms)(connection);
    };
}

std::clock_t processTime() {
    return std::clock() * 1000 / CLOCKS_PER_SEC;
}

TEST_P(HostileNetworkInBothTypes, AWaitThatFailsTakesNoTimeAndEnds) {
    const RawServer silent(RawServer::stayingSilent);
    CurlHTTPClient client(settings());
    auto answer =
        std::async(std::launch::async, [&] { return send(client, makeRequest(silent.url("/"), GetParam())); });
    while (silent.received().empty())
        std::this_thread::sleep_for(1ms);
    FailingCalls::poll = true;
    const std::clock_t start = processTime();
    const HTTPResponse response = answer.get();
    EXPECT_LT(processTime() - start, 500);
    FailingCalls::poll = false;
    EXPECT_NE(response.getReason().find("does not let the client wait"), std::string::npos) << response.getReason();
    const RawServer good(Faults::serving({}));
    EXPECT_EQ(send(client, good.url("/")).getBody(), "{}");
}

// libcurl, or OpenSSL, goes on within one call as long as there is something to read.
TEST(HostileNetwork, APeerThatNeverPausesHoldsNobodyUp) {
    std::string helloRequests;
    while (helloRequests.size() < 65536)
        helloRequests += std::string("\x16\x03\x03\0\x04\0\0\0\0", 9);
    const RawServer handshake(Faults::repeating("", helloRequests, 0ms));
    const RawServer proxy(endless("HTTP/1.1 407 No\r\nContent-Length: 999999999999\r\n\r\n", std::string(65536, 'x')));
    setenv("https_proxy", proxy.url("").c_str(), 1);
    for (const std::string& url :
         {"https://127.0.0.1" + handshake.url("/").substr(16), std::string("https://service.example/")}) {
        const auto start = std::chrono::steady_clock::now();
        EXPECT_EQ(send(impatient(), url).getStatus(), 0) << url;
        EXPECT_LT(std::chrono::steady_clock::now() - start, 5s) << url;
        CurlHTTPClient closed(settings());
        HTTPRequest request = makeRequest(url, Type::CLIENT_THREAD);
        closed.queueRequest(request);
        std::this_thread::sleep_for(100ms);
    }
    unsetenv("https_proxy");
}

TEST(HostileNetwork, EachTimeLimitHoldsByItself) {
    const RawServer silent(RawServer::stayingSilent);
    CurlHTTPClientSettings request = settings();
    request.requestTimeout = 200ms;
    EXPECT_NE(send(request, silent.url("/")).getReason().find("Operation timed out"), std::string::npos);
    EXPECT_EQ(send(request, silent.url("/")).getFailureKind(), FailureKind::TIMEOUT);
    const RawServer slowRedirects([](const RawServer::Connection& connection) {
        while (!connection.readRequest().empty()) {
            std::this_thread::sleep_for(90ms);
            connection.send("HTTP/1.1 302 Found\r\nLocation: /\r\nContent-Length: 0\r\n\r\n");
        }
    });
    EXPECT_EQ(send(request, slowRedirects.url("/")).getFailureKind(), FailureKind::TIMEOUT) << "all redirects together";
    CurlHTTPClientSettings stall = settings();
    stall.stallTimeout = 1s;
    EXPECT_NE(send(stall, silent.url("/")).getReason().find("Operation too slow"), std::string::npos);
    const RawServer full(nullptr);
    CurlHTTPClientSettings connect = settings();
    connect.connectTimeout = 200ms;
    CurlHTTPClient client(connect);
    HTTPRequest filler = makeRequest(full.url("/"), Type::CLIENT_THREAD);
    for (int i = 0; i < 4; ++i)
        client.queueRequest(filler);
    EXPECT_NE(send(client, full.url("/")).getReason().find("in time"), std::string::npos);
    EXPECT_EQ(send(client, full.url("/")).getFailureKind(), FailureKind::NETWORK);
}

// A gzip stream of that many zeros, in pieces, so that nobody has to hold even what is compressed.
RawServer::Serve bomb(std::size_t zeros) {
    return [zeros](const RawServer::Connection& connection) {
        constexpr std::size_t pieceSize = std::size_t{1} << 20;
        const std::string piece(pieceSize, '\0');
        std::string compressed(pieceSize, '\0');
        z_stream stream{};
        deflateInit2(&stream, Z_BEST_SPEED, Z_DEFLATED, MAX_WBITS + 16, MAX_MEM_LEVEL, Z_DEFAULT_STRATEGY);
        connection.readRequest();
        bool isThere = connection.send(Faults::ok + "Content-Encoding: gzip\r\nConnection: close\r\n\r\n");
        for (std::size_t left = zeros; isThere && left > 0; left -= pieceSize) {
            stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(piece.data()));
            stream.avail_in = static_cast<uInt>(piece.size());
            stream.next_out = reinterpret_cast<Bytef*>(compressed.data());
            stream.avail_out = static_cast<uInt>(compressed.size());
            deflate(&stream, left == pieceSize ? Z_FINISH : Z_NO_FLUSH);
            isThere = connection.send(std::string_view(compressed).substr(0, compressed.size() - stream.avail_out));
        }
        deflateEnd(&stream);
    };
}

// A chain of redirects that have a body of a megabyte each.
void redirectWithBody(const RawServer::Connection& connection) {
    constexpr std::size_t megabyte = std::size_t{1} << 20;
    while (!connection.readRequest().empty())
        connection.send(fmt::format("HTTP/1.1 307 Temporary Redirect\r\nLocation: /\r\nContent-Length: {}\r\n\r\n{}",
                                    megabyte, std::string(megabyte, 'x')));
}

TEST_P(HostileNetworkInBothTypes, BodiesAreCutAtTheLimitAsDecoded) {
    constexpr std::size_t megabyte = std::size_t{1} << 20;
    const std::string chunk = fmt::format("1000\r\n{}\r\n", std::string(4096, 'x'));
    const std::string emptyGzip("\x1F\x8B\x08\0\0\0\0\0\x02\x03\x03\0\0\0\0\0\0\0\0\0", 20);
    const std::string redirect = "HTTP/1.1 302 Found\r\nLocation: /\r\n";
    const std::tuple<const char*, RawServer::Serve, std::size_t> cases[] = {
        {"plain, without a length", endless(Faults::ok + "Connection: close\r\n\r\n", chunk), 8 * megabyte},
        {"plain, with a length", endless(Faults::ok + "Content-Length: 100000000000\r\n\r\n", chunk), 8 * megabyte},
        {"chunked", endless(Faults::chunked, chunk), 8 * megabyte},
        {"behind a chunk's size", endless(Faults::chunked + "1;", std::string(4096, 'x')), megabyte},
        {"of a redirect", endless(redirect + "\r\n", chunk), megabyte},
        {"of a redirect in chunks", endless(redirect + "Transfer-Encoding: chunked\r\n\r\n", chunk), megabyte},
        {"of all redirects", redirectWithBody, 4 * megabyte},
        {"gzip of nothing", endless(Faults::gzip + "\r\n", emptyGzip + emptyGzip), megabyte},
        {"gzip of 2 MiB", bomb(2 * megabyte), megabyte},
        {"gzip of 64 MiB", bomb(64 * megabyte), megabyte},
        {"gzip of 2 GiB", bomb(2048 * megabyte), 256 * megabyte}};
    for (const auto& [name, serve, limit] : cases) {
        const RawServer server(serve);
        CurlHTTPClientSettings limited = settings();
        limited.maxBodyBytes = limit;
        CurlHTTPClient client(limited);
        const PeakMemory memory;
        const HTTPResponse response = send(client, makeRequest(server.url("/"), GetParam()));
        EXPECT_EQ(response.getReason(), fmt::format("the response is longer than {} bytes", limit)) << name;
        EXPECT_EQ(response.getFailureKind(), FailureKind::TOO_LARGE) << name;
        EXPECT_LT(memory.growth(), limit + 64 * megabyte) << name;
    }
    const RawServer exact(bomb(2 * megabyte));
    CurlHTTPClientSettings enough = settings();
    enough.maxBodyBytes = 2 * megabyte;
    EXPECT_EQ(send(enough, exact.url("/")).getBody(), std::string(2 * megabyte, '\0'))
        << "the limit itself is no fault";
}

// Nothing that a caller passes ends a line of the request: it is refused before a byte is sent, or goes out encoded.
TEST(HostileText, CannotSmuggle) {
    const RawServer server(RawServer::answering(Faults::ok + "Content-Length: 2\r\n\r\n{}"));
    const auto client = std::make_shared<CurlHTTPClient>(settings());
    const std::string port = server.url("");
    for (const std::string& bad : {std::string("a\r\nX-Bad: y"), std::string("a\nX-Bad: y"), std::string("a\0b", 3)}) {
        for (const std::string& url : {port + "/" + bad, port + bad, bad})
            EXPECT_EQ(send(*client, url).getReason().substr(0, 8), "refused:") << url;
        for (const auto& [name, value] : {std::pair<std::string, std::string>(bad, "value"),
                                          {"Name", bad},
                                          {"", "value"},
                                          {"Na:me", "value"},
                                          {"Name;", ""},
                                          {"Content-Length", "9"},
                                          {"transfer-encoding", "chunked"},
                                          {"HOST", "other.example"},
                                          {"Connection", "Upgrade"},
                                          {"Upgrade", "websocket"}}) {
            HTTPRequest request = makeRequest(server.url("/"), Type::CALLING_THREAD);
            request.setHeader(name, value);
            EXPECT_EQ(send(*client, request).getReason().substr(0, 8), "refused:") << name << value;
        }
        CurlHTTPClientSettings brokenToken = settings();
        brokenToken.token = bad;
        EXPECT_EQ(send(brokenToken, server.url("/")).getReason(), "refused: the token holds a control character");

        int failures = 0;
        const auto countFailure = [&](bool success, const auto&) { failures += success ? 0 : 1; };
        Qx::Orvanedm orvanedm(client, "hostile");
        const ScopedState badBase = scopedOption("hostile", L"orvaneServiceUrl", Qx::ToIString(port + bad));
        const ScopedState base = scopedOption("hostile", L"orvaneV3ServiceUrl", Qx::ToIString(port));
        orvanedm.getFullAssemblyStatus_V3("urn", countFailure, "ACTUAL" + bad, L"");
        orvanedm.requestFullAssemblyAccess("urn", countFailure, "LATEST");
        orvanedm.getFolderContents(Orvane::FolderContentLink::fromUrn("urn", "hostile"), {}, countFailure);
        EXPECT_EQ(failures, 3);
    }
    EXPECT_EQ(server.received(), "") << "none of them has reached the server";
}

TEST(HostileText, InAnIdOrALinkIsEncoded) {
    const RawServer server(Faults::serving({}));
    const ScopedState base = scopedOption("hostile", L"orvaneServiceUrl", Qx::ToIString(server.url("")));
    const auto client = std::make_shared<CurlHTTPClient>(settings());
    HTTPRequest blank = makeRequest(server.url("/"), Type::CALLING_THREAD);
    blank.setHeader("X-Blank", " ");
    EXPECT_TRUE(send(*client, blank).isSuccessful());
    EXPECT_NE(server.received().find("\r\nX-Blank:"), std::string::npos) << "it must not be lost either";
    Qx::Orvanedm orvanedm(client, "hostile");
    int successes = 0;
    const auto countSuccess = [&](bool success, const auto&) { successes += success ? 1 : 0; };
    orvanedm.requestFullAssemblyAccess("urn\r\nX-Bad: y", countSuccess, "LATEST");
    orvanedm.getFolderContents(Orvane::FolderContentLink::fromUrn("a b\r\nX-Bad: \u00e9", "hostile"), {{"k", "\r\n"}},
                               countSuccess);
    EXPECT_EQ(successes, 2);
    EXPECT_EQ(server.received().find("\nX-Bad"), std::string::npos);
    EXPECT_NE(server.received().find("POST /versions/urn%0D%0AX-Bad%3A%20y/fullassembly/access?algorithm=LATEST HTTP"),
              std::string::npos);
    EXPECT_NE(server.received().find("GET /folders/a%20b%0D%0AX-Bad:%20%C3%A9/content?k=%0D%0A HTTP"),
              std::string::npos)
        << server.received();
}

class Certificates : public testing::Test {
protected:
    static void SetUpTestSuite() {
        folder = testing::TempDir() + "orvane-certificates-" + std::to_string(getpid());
        ASSERT_EQ(std::system((TEST_SOURCES "/Support/make-certificates.sh " + folder).c_str()), 0);
    }
    static void TearDownTestSuite() { std::filesystem::remove_all(folder); }

    // A server with the certificate of that name that redirects where the query says, or tells the token it got.
    std::unique_ptr<TestServer> serve(const std::string& name, int maxVersion = TLS1_3_VERSION) {
        return std::make_unique<TestServer>(
            [this](const httplib::Request& request, httplib::Response& response) {
                ++received;
                if (request.has_param("to"))
                    response.set_redirect(request.get_param_value("to"));
                else if (request.has_param("cut"))
                    endWithoutLength(response, request.get_param_value("cut") == "yes");
                else if (request.has_param("close")) {
                    response.set_header("Connection",
                                        request.get_param_value("close") == "yes" ? "close" : "keep-alive");
                    response.set_content((SSL_session_reused(request.ssl) == 1 ? "resumed " : "new ") +
                                             std::to_string(request.remote_port),
                                         "text/plain");
                } else
                    response.set_content("token " + request.get_header_value("Authorization"), "text/plain");
            },
            std::make_unique<httplib::SSLServer>([&](SSL_CTX& context) {
                const std::string path = folder + '/' + name;
                SSL_CTX_set_max_proto_version(&context, maxVersion);
                return SSL_CTX_use_certificate_chain_file(&context, (path + ".pem").c_str()) == 1 &&
                       SSL_CTX_use_PrivateKey_file(&context, (path + ".key").c_str(), SSL_FILETYPE_PEM) == 1;
            }));
    }

    // A body that the end of the connection ends, which the server tells or not.
    static void endWithoutLength(httplib::Response& response, bool isCut) {
        response.set_header("Connection", "close");
        response.set_content_provider("text/plain", [isCut](std::size_t, httplib::DataSink& sink) {
            sink.write("{}", 2);
            sink.done();
            return !isCut;
        });
    }

    static std::string url(const TestServer& server, const std::string& path) {
        return "https://localhost:" + std::to_string(server.port()) + path;
    }

    static CurlHTTPClientSettings trusting(const std::string& authority) {
        CurlHTTPClientSettings made = settings();
        made.certificateFile = folder + '/' + authority + ".pem";
        return made;
    }

    static std::string folder;
    std::atomic<int> received = 0;
};
std::string Certificates::folder;

// Before OpenSSL reads them: a system's settings that permit all.
const int permissive = setenv("OPENSSL_CONF", TEST_SOURCES "/Support/permissive-openssl.cnf", 1);

TEST_F(Certificates, AreVerifiedBeforeAnythingIsSent) {
    const std::tuple<const char*, const char*, bool> cases[] = {{"good", "authority", true},
                                                                {"good", "other-authority", false},
                                                                {"expired", "authority", false},
                                                                {"other-host", "authority", false},
                                                                {"self-signed", "authority", false}};
    for (const auto& [certificate, authority, isGood] : cases) {
        received = 0;
        const auto server = serve(certificate);
        EXPECT_EQ(send(trusting(authority), url(*server, "/")).getStatus(), isGood ? 200 : 0) << certificate;
        EXPECT_EQ(received, isGood ? 1 : 0) << certificate;
    }
    const auto server = serve("good");
    const HTTPResponse unknown = send(settings(), url(*server, "/"));
    EXPECT_EQ(unknown.getFailureKind(), FailureKind::TLS) << "the system knows nothing of the authority";
}

TEST_F(Certificates, AreOfNoUseToAVersionOfTLSThatIsBroken) {
    EXPECT_EQ(send(trusting("authority"), url(*serve("good", TLS1_2_VERSION), "/")).getStatus(), 200);
    const HTTPResponse old = send(trusting("authority"), url(*serve("good", TLS1_1_VERSION), "/"));
    EXPECT_EQ(old.getFailureKind(), FailureKind::TLS) << "even if the system's settings permit it";
}

TEST_F(Certificates, TellABodyThatWasCutFromOneThatEnded) {
    const auto server = serve("good");
    EXPECT_EQ(send(trusting("authority"), url(*server, "/?cut=no")).getBody(), "{}");
    EXPECT_EQ(send(trusting("authority"), url(*server, "/?cut=yes")).getReason(), "the response was cut short");
}

TEST_F(Certificates, AreAskedForOnceInAConnectionAndItsSession) {
    const auto server = serve("good");
    CurlHTTPClient client(trusting("authority"));
    const std::string first(send(client, url(*server, "/?close=no")).getBody());
    EXPECT_EQ(first.substr(0, 4), "new ");
    EXPECT_EQ(send(client, url(*server, "/?close=yes")).getBody(), first) << "over the same connection";
    EXPECT_EQ(send(client, url(*server, "/?close=no")).getBody().substr(0, 8), "resumed ");
}

TEST_F(Certificates, KeepTheTokenFromWhereARedirectLeads) {
    const auto server = serve("good");
    const auto otherPort = serve("good");
    std::atomic<int> receivedPlain = 0;
    const TestServer plain([&](const httplib::Request&, httplib::Response&) { ++receivedPlain; });
    CurlHTTPClient client(trusting("authority"));
    const std::tuple<const char*, std::string, std::string> cases[] = {{"the same host", "/", "token Bearer " + token},
                                                                       {"another port", url(*otherPort, "/"), "token "},
                                                                       {"plain http", plain.url("/"), ""},
                                                                       {"a file", "file:///etc/hostname", ""},
                                                                       {"another scheme", "ftp://localhost/", ""}};
    for (const auto& [name, target, body] : cases) {
        const HTTPResponse response = send(client, url(*server, "/?to=" + target));
        EXPECT_EQ(response.getBody(), body) << name;
        EXPECT_EQ(response.getReason().find(token), std::string::npos) << name;
    }
    EXPECT_EQ(receivedPlain, 0);
}

} // namespace
