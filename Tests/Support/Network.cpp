#include "Tests/Support/Network.h"

#include "Base/QxBaseCore10/Strings.h"
#include "Tests/Support/Cases.h"

#include <algorithm>
#include <atomic>
#include <cctype>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <openssl/ssl.h>
#include <thread>
#include <unistd.h>
#include <zlib.h>

namespace {

using nlohmann::json;
using Connection = RawServer::Connection;
using Kind = Qx::HTTPResponse::FailureKind;

constexpr std::size_t mebibyte = std::size_t{1} << 20;

// The bytes of a text whose characters stand for one each.
std::string bytesOf(const json& text) {
    std::string bytes;
    for (const wchar_t character : Qx::ToIString(text.get<std::string>()))
        bytes += static_cast<char>(character);
    return bytes;
}

// A gzip stream of that many zeros, in pieces, so that nobody has to hold even what is compressed.
void sendBomb(Connection& connection, std::size_t zeros) {
    std::string piece(mebibyte, '\0');
    std::string compressed(mebibyte, '\0');
    z_stream stream{};
    deflateInit2(&stream, Z_BEST_SPEED, Z_DEFLATED, MAX_WBITS + 16, MAX_MEM_LEVEL, Z_DEFAULT_STRATEGY);
    bool isThere = connection.send("HTTP/1.1 200 OK\r\nContent-Encoding: gzip\r\nConnection: close\r\n\r\n");
    for (std::size_t left = zeros; isThere && left > 0; left -= piece.size()) {
        stream.next_in = reinterpret_cast<Bytef*>(piece.data());
        stream.avail_in = static_cast<uInt>(piece.size());
        stream.next_out = reinterpret_cast<Bytef*>(compressed.data());
        stream.avail_out = static_cast<uInt>(compressed.size());
        deflate(&stream, left == piece.size() ? Z_FINISH : Z_NO_FLUSH);
        isThere = connection.send(std::string_view(compressed).substr(0, compressed.size() - stream.avail_out));
    }
    deflateEnd(&stream);
}

void sendAgain(Connection& connection, const json& row, std::chrono::milliseconds pause) {
    std::string again;
    for (int times = row.value("times", 1); times > 0; --times)
        again += bytesOf(row["again"]);
    while (connection.send(again))
        std::this_thread::sleep_for(pause);
}

Kind kindOf(const std::string& name) {
    static const std::map<std::string, Kind> kinds{{"", Kind::NONE},
                                                   {"NOT_ALLOWED", Kind::NOT_ALLOWED},
                                                   {"NETWORK", Kind::NETWORK},
                                                   {"TLS", Kind::TLS},
                                                   {"TIMEOUT", Kind::TIMEOUT},
                                                   {"TOO_LARGE", Kind::TOO_LARGE},
                                                   {"MALFORMED", Kind::MALFORMED},
                                                   {"OUT_OF_MEMORY", Kind::OUT_OF_MEMORY}};
    return kinds.at(name);
}

// Made when they are first needed, and removed at the end of the process.
class CertificateFolder {
public:
    CertificateFolder() {
        const std::string command = TEST_SOURCES "/Support/make-certificates.sh " + path_.string();
        if (std::system(command.c_str()) != 0)
            throw std::runtime_error("the certificates could not be made");
    }
    CertificateFolder(const CertificateFolder&) = delete;
    CertificateFolder& operator=(const CertificateFolder&) = delete;
    ~CertificateFolder() { std::filesystem::remove_all(path_); }

    std::string path(const std::string& file) const { return path_ / file; }

private:
    const std::filesystem::path path_ =
        std::filesystem::temp_directory_path() / ("orvane-certificates-" + std::to_string(getpid()));
};

const CertificateFolder& certificates() {
    static const CertificateFolder folder;
    return folder;
}

// Before OpenSSL reads them: a system's settings that permit all.
const int permissive = setenv("OPENSSL_CONF", TEST_SOURCES "/Support/permissive-openssl.cnf", 1);

} // namespace

Circumstance::Circumstance(const json& row) : row_(std::make_shared<json>(row)) {}

template <class Value>
Value Circumstance::value(const char* key, const Value& otherwise) const {
    return row_->value(key, otherwise);
}

std::string Circumstance::name() const {
    std::string name = row_->at("shows");
    std::replace_if(
        name.begin(), name.end(), [](char letter) { return std::isalnum(static_cast<unsigned char>(letter)) == 0; },
        '_');
    return name;
}

RawServer Circumstance::serve() const {
    const std::map<std::string, int> versions{{"", 0}, {"1.1", TLS1_1_VERSION}, {"1.2", TLS1_2_VERSION}};
    if (!value("accepts", true))
        return RawServer(nullptr);
    const auto requests = std::make_shared<std::atomic<std::size_t>>(0);
    const auto serveOne = [*this, requests](Connection& connection) {
        if (row_->contains("raw") || !connection.readRequest().empty())
            respond(connection, (*requests)++);
    };
    if (!row_->contains("certificate"))
        return RawServer(serveOne);
    return RawServer(serveOne,
                     Network::identityOf((*row_)["certificate"], versions.at(value<std::string>("version", ""))));
}

void Circumstance::respond(Connection& connection, std::size_t request) const {
    const std::chrono::milliseconds pause(value("pauseMs", 0));
    const json sends = value("sends", json(""));
    const std::string bytes = bytesOf(sends.is_array() ? sends.at(std::min(request, sends.size() - 1)) : sends) +
                              std::string(value("fillMiB", std::size_t{0}) * mebibyte, 'x');
    do {
        if (row_->contains("always"))
            std::this_thread::sleep_for(pause);
        connection.send(bytes);
    } while (row_->contains("always") && !connection.readRequest().empty());
    if (row_->contains("again"))
        sendAgain(connection, *row_, pause);
    if (row_->contains("bombMiB"))
        sendBomb(connection, (*row_)["bombMiB"].get<std::size_t>() * mebibyte);
    if (row_->contains("silent"))
        connection.waitUntilClosed();
    if (row_->contains("resets"))
        connection.reset();
    if (row_->contains("cuts"))
        connection.cut();
}

void Circumstance::change(Qx::HTTPRequest& request, OrvaneHost::CurlHTTPClientSettings& settings) const {
    if (row_->value("method", "GET") == "POST")
        request.setMethod(Qx::HTTPRequest::Method::POST);
    request.setURL(bytesOf(value("url", request.getURL() + value<std::string>("path", ""))));
    if (row_->contains("secure"))
        request.setURL("https" + request.getURL().substr(4));
    if (row_->contains("header"))
        request.setHeader((*row_)["header"][0], (*row_)["header"][1]);
    if (!value("bearer", true))
        request.setAuthType(Qx::HTTPRequest::AuthType::NONE);
    settings.token = value("token", settings.token);
    settings.tokenOrigins = value("tokenOrigins", settings.tokenOrigins);
    settings.connectTimeout = std::chrono::milliseconds(value("connectTimeoutMs", settings.connectTimeout.count()));
    settings.requestTimeout = std::chrono::milliseconds(value("requestTimeoutMs", settings.requestTimeout.count()));
    settings.maxBodyBytes = value("maxBodyMiB", settings.maxBodyBytes / mebibyte) * mebibyte;
    settings.maxRedirects = value("maxRedirects", settings.maxRedirects);
    if (row_->contains("trusts"))
        settings.certificateFile = Network::trustedBy((*row_)["trusts"]);
}

void Circumstance::expect(const Qx::HTTPResponse& response) const {
    const json fails = value("fails", json(""));
    const json kinds = fails.is_array() ? fails : json::array({fails}); // Which of them it is depends on the time.
    EXPECT_TRUE(std::any_of(kinds.begin(), kinds.end(), [&](const json& kind) {
        return kindOf(kind) == response.getFailureKind();
    })) << response.getReason();
    EXPECT_EQ(response.getStatus(), row_->contains("fails") ? 0 : 200);
    EXPECT_NE(response.getReason().find(value<std::string>("reason", "")), std::string::npos) << response.getReason();
    EXPECT_EQ(response.getReason().find_first_of("\r\n"), std::string::npos);
    EXPECT_EQ(response.getReason().find("secret-token"), std::string::npos);
    if (row_->contains("body")) {
        EXPECT_EQ(response.getBody(), (*row_)["body"].get<std::string>());
    }
    if (row_->contains("bombMiB")) {
        EXPECT_EQ(response.getBody().find_first_not_of('\0'), std::string::npos);
    }
    EXPECT_EQ(response.getBody().size(), value("bodyBytes", value<std::string>("body", "").size()));
}

void Circumstance::expectReceived(const std::string& requests) const {
    std::size_t at = 0;
    for (const std::string part : value("receives", json::array())) {
        at = requests.find(part, at);
        ASSERT_NE(at, std::string::npos) << part << " in " << requests;
        ++at;
    }
    for (const std::string part : value("lacks", json::array()))
        EXPECT_EQ(requests.find(part), std::string::npos) << requests;
    if (isRefused()) {
        EXPECT_EQ(requests, "");
    }
}

std::optional<ScopedState> Circumstance::useProxy(const RawServer& server) const {
    if (!row_->contains("proxy"))
        return std::nullopt;
    const std::string proxy = (*row_)["proxy"] == "{server}" ? server.url("") : (*row_)["proxy"].get<std::string>();
    for (const char* variable : {"http_proxy", "https_proxy"})
        setenv(variable, proxy.c_str(), 1);
    return std::optional<ScopedState>(std::in_place, [] {
        unsetenv("http_proxy");
        unsetenv("https_proxy");
    });
}

std::chrono::milliseconds Circumstance::limit() const {
    return std::chrono::milliseconds(value("withinMs", 60'000));
}

bool Circumstance::isRefused() const {
    return row_->at("shows").get<std::string>().starts_with("refused");
}

namespace Network {

const std::vector<Circumstance>& circumstances() {
    static const std::vector<Circumstance> all = [] {
        const json rows = casesOf("network.json");
        return std::vector<Circumstance>(rows.begin(), rows.end());
    }();
    return all;
}

void serveByPath(Connection& connection) {
    for (std::string request = connection.readRequest(); !request.empty(); request = connection.readRequest()) {
        const std::size_t index = std::strtoul(request.c_str() + request.find('/') + 1, nullptr, 10);
        if (index < circumstances().size()) {
            circumstances()[index].respond(connection, 0);
            return;
        }
        connection.send(Serving::ok("{}"));
    }
}

RawServer::Identity identityOf(const std::string& name, int maxVersion) {
    return {certificates().path(name + ".pem"), certificates().path(name + ".key"), maxVersion};
}

std::string trustedBy(const std::string& authority) {
    return certificates().path(authority + ".pem");
}

} // namespace Network
