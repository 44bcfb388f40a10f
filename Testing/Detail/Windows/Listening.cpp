#include "Testing/Detail/Listening.h"

namespace Orvane::Testing::Detail {

// Exclusive use is requested because Windows would otherwise let another program listen on the same
// port and receive the requests, with their tokens.
boost::asio::ip::tcp::acceptor listenOn(boost::asio::io_context& context, int port) {
    using boost::asio::ip::tcp;
    using ExclusiveUse = boost::asio::detail::socket_option::boolean<SOL_SOCKET, SO_EXCLUSIVEADDRUSE>;
    tcp::acceptor acceptor(context, tcp::v4());
    acceptor.set_option(ExclusiveUse(true));
    acceptor.bind({boost::asio::ip::address_v4::loopback(), static_cast<boost::asio::ip::port_type>(port)});
    acceptor.listen();
    return acceptor;
}

} // namespace Orvane::Testing::Detail
