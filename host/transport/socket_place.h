// Where the sockets of running switches are.
#pragma once

#include <sys/socket.h>
#include <sys/un.h>

#include <string>
#include <string_view>
#include <vector>

namespace host {

// Whether a text can name a switch: up to 64 letters, digits, '-', '_' and '.', the first no '.'.
bool is_switch_name(std::string_view text);

// The directory of the sockets of this user's switches: /run/pmsh for root, else $XDG_RUNTIME_DIR/pmsh; empty when
// there is none.
std::string own_socket_directory();

// The directories in which a shell of this user looks for a switch, in this order.
std::vector<std::string> socket_directories();

std::string socket_in(const std::string& directory, std::string_view switch_name);

// The names of the switches whose sockets are in the directories, sorted.
std::vector<std::string> known_switches();

// The address of a socket. Returns false for a path that is too long.
bool make_address(const std::string& path, sockaddr_un& address);

}  // namespace host
