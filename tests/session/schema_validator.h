// JSON documents against a JSON Schema: the keywords that our schema uses. Any other one is an error.
#pragma once

#include <string>

#include "session/json.h"

namespace session {

// Where `value` does not follow `schema`, and by which keyword, such as "/interfaces/0/mtu_bytes: type"; empty when it
// does. References are looked up in `root`. Throws std::logic_error for a keyword that is not known.
std::string schema_fault(const rapidjson::Value& value, const rapidjson::Value& schema, const rapidjson::Value& root);

}  // namespace session
