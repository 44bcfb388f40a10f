#pragma once

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>

namespace Orvane::Testing::Detail {

/// Listens on a loopback port that no other program listens on; on any free one if it is 0. Throws
/// `boost::system::system_error`.
boost::asio::ip::tcp::acceptor listenOn(boost::asio::io_context& context, int port);

} // namespace Orvane::Testing::Detail
