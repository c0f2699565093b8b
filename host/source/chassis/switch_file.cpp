#include "source/chassis/switch_file.h"

#include "source/chassis/build_machine.h"
#include "switch/kernel_device.h"

namespace host {

machine load_switch_file(const std::string& path, std::time_t now) {
  return read_switch_document(load_yaml_file(path), path, now);
}

machine read_switch_document(const yaml_document& document, const std::string& path, std::time_t now) {
  switch_draft draft;
  draft.now_sec = static_cast<uint32>(now);
  read_switch(yaml_value(document.root(), "the switch file", path), draft);
  if (draft.data.name.empty()) fail_at(path, 1, "a switch file needs a 'switch' with a 'name'");
  if (draft.data.mgmt_device.empty()) draft.data.mgmt_device = first_kernel_device();
  return build_machine(std::move(draft), path);
}

}  // namespace host
