// A YAML document as a tree.
#pragma once

#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "platform/types.h"

namespace host {

struct yaml_node;

struct yaml_entry {
  const yaml_node* key;
  const yaml_node* value;
};

// A value of the document. An alias is the node of its anchor.
struct yaml_node {
  enum class type : uint8 { nothing, scalar, list, map };

  type what = type::nothing;
  uint32 line = 0;                           // from 1
  std::string text = {};                     // of a scalar
  std::vector<const yaml_node*> items = {};  // of a list
  std::vector<yaml_entry> entries = {};      // of a map, in the order of the file

  // The value of a key; null when there is none, and of what is not a map.
  const yaml_node* find(std::string_view key) const;
};

// The one document of a file. It owns its nodes.
class yaml_document {
 public:
  // Throws yaml_file_error, with the name of the file and the line of the fault, for a text that is not YAML, is empty
  // or has a second document. Nesting and the number of values, also of those that aliases repeat, are limited.
  yaml_document(std::string_view content, const std::string& path);

  const yaml_node& root() const { return *root_; }

 private:
  std::deque<yaml_node> nodes_;
  const yaml_node* root_ = nullptr;
};

// Reads a file. Throws yaml_file_error also for one that cannot be read or is longer than 64 MiB.
yaml_document load_yaml_file(const std::string& path);

}  // namespace host
