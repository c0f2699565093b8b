// lldpd by its library, liblldpctl. The library is optional and loaded when it is needed; its functions and numbers are
// declared here so that a build does not need its package, which starts the daemon.
#include "source/kernel/lldp_library.h"

#include <dlfcn.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <ctime>
#include <memory>
#include <optional>
#include <string>

#include "base/replace_file.h"
#include "source/kernel/lldp.h"

namespace host {
namespace {

constexpr timeval kLongestWait = {10, 0};

struct connection;
struct atom;
struct iterator;
using transfer = ssize_t (*)(connection* of, const uint8* bytes, std::size_t size, void* user);

struct lldp_library {
  const char* (*transport)();
  void (*log_callback)(void (*log)(int severity, const char* message));
  connection* (*create)(transfer send, transfer receive, void* user);
  int (*release)(connection* released);
  atom* (*interfaces)(connection* of);
  atom* (*port)(atom* interface);
  int (*last_error)(connection* of);
  atom* (*get)(atom* of, int key);
  const char* (*text)(atom* of, int key);
  const uint8* (*buffer)(atom* of, int key, std::size_t* size);
  long (*number)(atom* of, int key);
  iterator* (*first)(atom* list);
  iterator* (*next)(atom* list, iterator* at);
  atom* (*value)(atom* list, iterator* at);
  void (*drop)(atom* dropped);
};

template <typename Function>
bool find_function(void* library, const char* name, Function& function) {
  function = reinterpret_cast<Function>(dlsym(library, name));
  return function != nullptr;
}

bool find_functions(void* from, lldp_library& to) {
  return find_function(from, "lldpctl_get_default_transport", to.transport) &&
         find_function(from, "lldpctl_log_callback", to.log_callback) &&
         find_function(from, "lldpctl_new", to.create) && find_function(from, "lldpctl_release", to.release) &&
         find_function(from, "lldpctl_get_interfaces", to.interfaces) &&
         find_function(from, "lldpctl_get_port", to.port) && find_function(from, "lldpctl_last_error", to.last_error) &&
         find_function(from, "lldpctl_atom_get", to.get) && find_function(from, "lldpctl_atom_get_str", to.text) &&
         find_function(from, "lldpctl_atom_get_buffer", to.buffer) &&
         find_function(from, "lldpctl_atom_get_int", to.number) && find_function(from, "lldpctl_atom_iter", to.first) &&
         find_function(from, "lldpctl_atom_iter_next", to.next) &&
         find_function(from, "lldpctl_atom_iter_value", to.value) &&
         find_function(from, "lldpctl_atom_dec_ref", to.drop);
}

// Loads the library, which then stays: it may be installed while this program runs. Returns 0 or the errno of the
// answer.
int load_library(lldp_library& loaded) {
  static void* opened = nullptr;
  if (opened == nullptr) opened = dlopen("liblldpctl.so.4", RTLD_NOW | RTLD_LOCAL);
  if (opened == nullptr) return ELIBACC;
  if (!find_functions(opened, loaded)) return ELIBBAD;
  loaded.log_callback([](int, const char*) {});
  return 0;
}

// ---- The socket -----------------------------------------------------------------------------------------------------

// The library's own connection has neither a time limit nor the reason of a failure.
struct lldpd_socket {
  int descriptor = -1;
  int error = 0;  // of the last transfer that failed
};

int connect_to(const char* path, int descriptor) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (std::strlen(path) >= sizeof address.sun_path) return ENAMETOOLONG;
  std::strcpy(address.sun_path, path);
  setsockopt(descriptor, SOL_SOCKET, SO_RCVTIMEO, &kLongestWait, sizeof kLongestWait);
  setsockopt(descriptor, SOL_SOCKET, SO_SNDTIMEO, &kLongestWait, sizeof kLongestWait);
  return connect(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 ? 0 : errno;
}

ssize_t finished(ssize_t size, lldpd_socket& socket) {
  if (size > 0) return size;
  socket.error = size == 0 ? EPROTO : errno;
  return lldpctl::kCallbackFailed;
}

ssize_t send_bytes(connection*, const uint8* bytes, std::size_t size, void* user) {
  auto& socket = *static_cast<lldpd_socket*>(user);
  ssize_t sent = -1;
  while ((sent = send(socket.descriptor, bytes, size, MSG_NOSIGNAL)) < 0 && errno == EINTR) continue;
  return finished(sent, socket);
}

ssize_t receive_bytes(connection*, const uint8* bytes, std::size_t size, void* user) {
  auto& socket = *static_cast<lldpd_socket*>(user);
  ssize_t got = -1;
  while ((got = recv(socket.descriptor, const_cast<uint8*>(bytes), size, 0)) < 0 && errno == EINTR) continue;
  return finished(got, socket);
}

// ---- Atoms ----------------------------------------------------------------------------------------------------------

class atom_reader {
 public:
  explicit atom_reader(const lldp_library& library) : library_(library) {}

  // Frees an atom with the scope.
  auto own(atom* it) const { return std::unique_ptr<atom, void (*)(atom*)>(it, library_.drop); }
  auto get(atom* of, int key) const { return own(library_.get(of, key)); }

  std::string text(atom* of, int key) const {
    const char* const found = library_.text(of, key);
    return found == nullptr ? std::string() : std::string(found, strnlen(found, kMostLldpBytes));
  }

  // Numbers are not negative; the library returns -1 for none.
  std::optional<uint32> number(atom* of, int key) const {
    const long found = library_.number(of, key);
    return found < 0 ? std::nullopt : std::optional(static_cast<uint32>(std::min<long>(found, UINT32_MAX)));
  }

  std::string bytes(atom* of, int key) const {
    std::size_t size = 0;
    const uint8* const found = library_.buffer(of, key, &size);
    return found == nullptr ? std::string() : std::string(found, found + std::min(size, kMostLldpBytes));
  }

  // Calls `visit` with each atom of a list; null has none.
  template <typename Visit>
  void for_each(atom* list, Visit visit) const {
    for (iterator* at = library_.first(list); at != nullptr; at = library_.next(list, at)) {
      const auto it = own(library_.value(list, at));
      if (it == nullptr) return;
      visit(it.get());
    }
  }

 private:
  const lldp_library& library_;
};

std::optional<uint32> seconds_since(std::optional<uint32> moment) {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  if (!moment || *moment == 0) return std::nullopt;
  return static_cast<uint32>(std::max<std::int64_t>(0, std::int64_t{now.tv_sec} - *moment));
}

lldp_neighbor neighbor_of(const atom_reader& read, atom* port) {
  namespace key = lldpctl;
  lldp_neighbor it;
  it.protocol = read.text(port, key::kPortProtocol);
  it.port = {read.number(port, key::kPortIdSubtype).value_or(0), read.bytes(port, key::kPortId)};
  it.port_description = read.text(port, key::kPortDescription);
  it.ttl_seconds = read.number(port, key::kPortTtl);
  it.unchanged_seconds = seconds_since(read.number(port, key::kPortAge));
  it.port_vlan = read.number(port, key::kPortPvid);
  if (it.port_vlan == 0U) it.port_vlan.reset();
  const auto vlans = read.get(port, key::kPortVlans);
  read.for_each(vlans.get(), [&](atom* vlan) {
    const auto number = read.number(vlan, key::kVlanId);
    if (number && it.vlans.size() < kMostLldpEntries) it.vlans.push_back(*number);
  });
  const auto chassis = read.get(port, key::kPortChassis);
  if (chassis == nullptr) return it;
  it.chassis = {read.number(chassis.get(), key::kChassisIdSubtype).value_or(0),
                read.bytes(chassis.get(), key::kChassisId)};
  it.system_name = read.text(chassis.get(), key::kChassisName);
  it.system_description = read.text(chassis.get(), key::kChassisDescription);
  it.capabilities = read.number(chassis.get(), key::kChassisCapabilities).value_or(0);
  it.enabled_capabilities = read.number(chassis.get(), key::kChassisEnabled).value_or(0);
  const auto addresses = read.get(chassis.get(), key::kChassisManagement);
  read.for_each(addresses.get(), [&](atom* address) {
    if (it.management_addresses.size() < kMostLldpEntries)
      it.management_addresses.push_back(read.text(address, key::kManagementIp));
  });
  return it;
}

// Appends the neighbors of a device. False when lldpd does not report it.
bool read_port(const lldp_library& library, atom* interface, std::vector<lldp_neighbor>& to) {
  const atom_reader read(library);
  const auto port = read.own(library.port(interface));
  if (port == nullptr) return false;
  const std::string device = read.text(port.get(), lldpctl::kPortName);
  const uint32 number = read.number(port.get(), lldpctl::kPortIndex).value_or(0);
  const auto neighbors = read.get(port.get(), lldpctl::kPortNeighbors);
  read.for_each(neighbors.get(), [&](atom* it) {
    if (read.number(it, lldpctl::kPortHidden).value_or(0) != 0) return;
    to.push_back(neighbor_of(read, it));
    to.back().device = device;
    to.back().device_number = number;
  });
  return true;
}

// What became of a request that gave nothing.
int error_of(const lldp_library& library, connection* of, const lldpd_socket& socket) {
  if (socket.error != 0) return socket.error;
  return library.last_error(of) == lldpctl::kOutOfMemory ? ENOMEM : EPROTO;
}

lldp_answer read_neighbors(const lldp_library& library, lldpd_socket& socket) {
  const std::unique_ptr<connection, int (*)(connection*)> opened(library.create(send_bytes, receive_bytes, &socket),
                                                                 library.release);
  if (opened == nullptr) return {ENOMEM};
  const atom_reader read(library);
  const auto interfaces = read.own(library.interfaces(opened.get()));
  if (interfaces == nullptr) return {error_of(library, opened.get(), socket)};
  lldp_answer answer;
  read.for_each(interfaces.get(), [&](atom* it) {
    if (answer.error != 0 || read_port(library, it, answer.neighbors)) return;
    const int error = library.last_error(opened.get());
    if (error != lldpctl::kDoesNotExist) answer.error = error_of(library, opened.get(), socket);
  });
  return answer;
}

}  // namespace

lldp_answer ask_lldpd() {
  lldp_library library{};
  if (const int error = load_library(library); error != 0) return {error};
  const open_file opened(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
  if (opened.descriptor < 0) return {errno};
  if (const int error = connect_to(library.transport(), opened.descriptor); error != 0) return {error};
  lldpd_socket socket{opened.descriptor};
  return read_neighbors(library, socket);
}

}  // namespace host
