#include "Testing/LocalService.h"

#include <array>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/read.hpp>
#include <boost/asio/write.hpp>
#include <gtest/gtest.h>
#include <stdexcept>

namespace {

namespace asio = boost::asio;
using Orvane::Testing::LocalService;
using Orvane::Testing::PreparedAnswers;

TEST(LocalService, ConstructorThrowsIfThePortIsTaken) {
    const LocalService service(PreparedAnswers::sample(), "t", 0);
    EXPECT_THROW(LocalService(PreparedAnswers::sample(), "t", service.port()), std::runtime_error);
}

// A client that sends arbitrary bytes and reads until the connection ends.
class RawClient {
public:
    explicit RawClient(int port) {
        socket_.connect({asio::ip::address_v4::loopback(), static_cast<asio::ip::port_type>(port)});
    }

    void send(const std::string& bytes) { asio::write(socket_, asio::buffer(bytes)); }

    std::string readAll() {
        std::string all;
        boost::system::error_code ended;
        asio::read(socket_, asio::dynamic_buffer(all), ended);
        return all;
    }

private:
    asio::io_context io_;
    asio::ip::tcp::socket socket_{io_};
};

TEST(LocalService, AnswersValidRequestsAndRefusesOthers) {
    PreparedAnswers answers;
    answers.add(Qx::HTTPRequest::Method::GET, "/a",
                Qx::HTTPResponse(418, "body", {{"X", "1"}, {"X", "2"}, {"Y", "\n"}}));
    const LocalService service(answers, "t", 0);
    const RawClient silent(service.port());
    const std::string end = " HTTP/1.1\r\nAuthorization: beareR t\r\nConnection: close\r\n\r\n";
    const std::string body = "body";
    for (const auto& [request, status, isWhole] : std::initializer_list<std::tuple<std::string, std::string, bool>>{
             {"GET /a" + end, "418", true},
             {"GET /a HTTP/1.1\r\nAuthorization: Bearer t\r\n\r\nGET /b" + end, "418", false},
             {"HEAD /a" + end, "418", false},
             {"GET /b" + end, "404", false},
             {"GET /a HTTP/1.1\r\nAuthorization: Bearer t2\r\nConnection: close\r\n\r\n", "401", false},
             {"POST /a HTTP/1.1\r\nAuthorization: Bearer t\r\nContent-Length: 9999999\r\n\r\n", "413", false},
             {"PATCH /a" + end, "405", false},
             {"GET /" + std::string(100'000, 'u') + end, "414", false},
             {"GET /" + std::string(200'000, 'u') + end, "414", false},
             {"GET /a HTTP/1.1\r\nX: " + std::string(200'000, 'u') + "\r\n\r\n", "431", false},
             {"GET /a HTTP/1.1\r\nX: " + std::string(65'530, 'u') + "\r\n\r\n", "431", false},
             {"nonsense\r\n\r\n", "400", false}}) {
        RawClient client(service.port());
        client.send(request);
        const std::string answer = client.readAll();
        EXPECT_EQ(answer.substr(0, 12), "HTTP/1.1 " + status) << request.substr(0, 200);
        EXPECT_EQ(answer.ends_with(body), isWhole) << answer;
        EXPECT_EQ(answer.find("X: 1\r\nX: 2\r\n") != std::string::npos, status == "418") << answer;
        EXPECT_EQ(answer.find("Y:"), std::string::npos) << answer;
    }
}

} // namespace
