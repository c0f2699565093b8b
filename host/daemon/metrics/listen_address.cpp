#include "daemon/metrics/listen_address.h"

#include <arpa/inet.h>
#include <fmt/format.h>

#include "base/digits.h"
#include "platform/types.h"

namespace host {
namespace {

constexpr std::string_view kLoopback = "127.0.0.1";

// Sets the address, without a port. False when the text is not one.
bool read_ipv4(const std::string& text, listen_address& to) {
  to.ipv4 = {.sin_family = AF_INET, .sin_port = 0, .sin_addr = {}, .sin_zero = {}};
  to.size = sizeof to.ipv4;
  return inet_pton(AF_INET, text.c_str(), &to.ipv4.sin_addr) == 1;
}

bool read_ipv6(const std::string& text, listen_address& to) {
  to.ipv6 = {.sin6_family = AF_INET6, .sin6_port = 0, .sin6_flowinfo = 0, .sin6_addr = {}, .sin6_scope_id = 0};
  to.size = sizeof to.ipv6;
  return inet_pton(AF_INET6, text.c_str(), &to.ipv6.sin6_addr) == 1;
}

}  // namespace

// The port is at the same place in both.
static_assert(offsetof(sockaddr_in, sin_port) == offsetof(sockaddr_in6, sin6_port));

std::optional<listen_address> read_listen_address(std::string_view text) {
  const std::size_t colon = text.rfind(':');
  const std::string_view host = colon == std::string_view::npos ? std::string_view() : text.substr(0, colon);
  uint16 port = 0;
  if (!read_number(text.substr(colon == std::string_view::npos ? 0 : colon + 1), port)) return std::nullopt;
  listen_address made;
  const bool is_bracketed = host.size() > 2 && host.front() == '[' && host.back() == ']';
  const bool is_read = is_bracketed ? read_ipv6(std::string(host.substr(1, host.size() - 2)), made)
                                    : read_ipv4(std::string(host.empty() ? kLoopback : host), made);
  if (!is_read) return std::nullopt;
  made.ipv4.sin_port = htons(port);
  return made;
}

std::string text_of(const listen_address& address) {
  char host[INET6_ADDRSTRLEN] = "";
  const bool is_ipv6 = address.any.sa_family == AF_INET6;
  const void* const bytes = is_ipv6 ? static_cast<const void*>(&address.ipv6.sin6_addr) : &address.ipv4.sin_addr;
  inet_ntop(address.any.sa_family, bytes, host, sizeof host);
  return fmt::format("{}{}{}:{}", is_ipv6 ? "[" : "", host, is_ipv6 ? "]" : "", ntohs(address.ipv4.sin_port));
}

}  // namespace host
