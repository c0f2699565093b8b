// What the users of the machine may do with the switch.
#pragma once

#include <sys/types.h>

#include <optional>
#include <stdexcept>
#include <string>

#include "settings/session.h"

namespace host {

// One sentence with the next step.
struct access_error : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// The number of a group. Throws access_error when there is none of this name.
gid_t find_group(const std::string& name);

// The rights of the process at the other end of a socket. Root and the user of this process have all. Others may be
// only the user of the switch that has their name; of them only members of `group` may change the switch, without one
// everyone.
session_rights rights_of_peer(int descriptor, std::optional<gid_t> group);

}  // namespace host
