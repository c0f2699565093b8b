// Where the daemon listens for HTTP.
#pragma once

#include <netinet/in.h>
#include <sys/socket.h>

#include <optional>
#include <string>
#include <string_view>

namespace host {

// An IP address with a port. Port 0 takes a free one.
struct listen_address {
  union {
    sockaddr any;
    sockaddr_in ipv4;
    sockaddr_in6 ipv6;
  };
  socklen_t size = 0;
};

// Reads "9100", ":9100" (both at the loopback), "192.0.2.1:9100" or "[::1]:9100". Nothing for another text.
std::optional<listen_address> read_listen_address(std::string_view text);

// As it is written above, with its address.
std::string text_of(const listen_address& address);

}  // namespace host
