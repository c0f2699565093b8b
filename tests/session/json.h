// RapidJSON for tests: reading what a document does not have fails the test and not the program.
#pragma once

#include <stdexcept>

#define RAPIDJSON_ASSERT_THROWS
#define RAPIDJSON_ASSERT(condition) \
  if (!(condition)) throw std::logic_error("the JSON document is of another shape: " #condition)

#include <rapidjson/document.h>
