#include "Tests/Support/Network.h"

#include "Base/QxBaseCore10/Strings.h"

#include <boost/algorithm/string/replace.hpp>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>
#include <openssl/ssl.h>
#include <thread>
#include <unistd.h>
#include <zlib.h>

namespace {

using nlohmann::json;
using Connection = RawServer::Connection;

constexpr std::size_t mebibyte = std::size_t{1} << 20;

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
        again += Network::bytesOf(row["again"]);
    while (connection.send(again))
        std::this_thread::sleep_for(pause);
}

// What the request of that number gets.
std::string bytesFor(const json& row, std::size_t request, unsigned port, unsigned otherPort) {
    const json sends = row.value("sends", json(""));
    std::string bytes = Network::bytesOf(sends.is_array() ? sends.at(request % sends.size()) : sends);
    boost::replace_all(bytes, "{port}", std::to_string(port));
    boost::replace_all(bytes, "{other}", std::to_string(otherPort));
    return bytes + std::string(row.value("fillMiB", std::size_t{0}) * mebibyte, 'x');
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

namespace Network {

std::string bytesOf(const json& text) {
    std::string bytes;
    for (const wchar_t character : Qx::ToIString(text.get<std::string>()))
        bytes += static_cast<char>(character);
    return bytes;
}

RawServer serve(const json& row, unsigned otherPort) {
    if (!row.value("accepts", true))
        return RawServer(nullptr);
    const auto requests = std::make_shared<std::atomic<std::size_t>>(0);
    const auto serveOne = [row, otherPort, requests](Connection& connection) {
        if (row.contains("raw") || !connection.readRequest().empty())
            respond(row, connection, *requests, otherPort);
    };
    if (!row.contains("certificate"))
        return RawServer(serveOne);
    const std::map<std::string, int> versions{{"", 0}, {"1.1", TLS1_1_VERSION}, {"1.2", TLS1_2_VERSION}};
    return RawServer(serveOne, identityOf(row["certificate"], versions.at(row.value("version", ""))));
}

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
    if (row.contains("bombMiB"))
        sendBomb(connection, row["bombMiB"].get<std::size_t>() * mebibyte);
    if (row.contains("silent"))
        connection.waitUntilClosed();
    if (row.contains("resets"))
        connection.reset();
    if (row.contains("cuts"))
        connection.cut();
}

RawServer::Identity identityOf(const std::string& name, int maxVersion) {
    return {certificates().path(name + ".pem"), certificates().path(name + ".key"), maxVersion};
}

std::string trustedBy(const std::string& authority) {
    return certificates().path(authority + ".pem");
}

} // namespace Network
