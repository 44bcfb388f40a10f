#include "Testing/Detail/Listening.h"

namespace Orvane::Testing::Detail {

boost::asio::ip::tcp::acceptor listenOn(boost::asio::io_context& context, int port) {
    return {context, {boost::asio::ip::address_v4::loopback(), static_cast<boost::asio::ip::port_type>(port)}};
}

} // namespace Orvane::Testing::Detail
