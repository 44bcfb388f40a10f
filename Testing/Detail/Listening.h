#pragma once

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>

namespace Orvane::Testing::Detail {

/// Listens on the loopback port `port`, exclusively; on any free port if it is 0. Throws
/// `boost::system::system_error` on failure.
boost::asio::ip::tcp::acceptor listenOn(boost::asio::io_context& context, int port);

} // namespace Orvane::Testing::Detail
