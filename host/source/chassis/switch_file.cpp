#include "source/chassis/switch_file.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

#include "source/chassis/build_machine.h"
#include "switch/kernel_device.h"

namespace host {
namespace {

std::string read_file(const std::string& path) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "re"), std::fclose);
  if (!file) throw yaml_file_error(fmt::format("{}: {}", path, std::strerror(errno)));
  std::string content;
  char block[16384];
  while (const std::size_t size = std::fread(block, 1, sizeof block, file.get())) content.append(block, size);
  if (std::ferror(file.get())) throw yaml_file_error(fmt::format("{}: {}", path, std::strerror(errno)));
  return content;
}

YAML::Node parse_document(const std::string& content, const std::string& path) {
  try {
    std::vector<YAML::Node> documents = YAML::LoadAll(content);
    if (documents.empty() || documents.front().IsNull())
      throw yaml_file_error(fmt::format("{}: the file is empty", path));
    if (documents.size() > 1) fail_at(path, static_cast<uint32>(documents[1].Mark().line + 1), "a second document");
    return documents.front();
  } catch (const YAML::Exception& error) {
    if (error.mark.is_null()) throw yaml_file_error(fmt::format("{}: not YAML: {}", path, error.msg));
    fail_at(path, static_cast<uint32>(error.mark.line + 1), fmt::format("not YAML: {}", error.msg));
  }
}

}  // namespace

machine load_switch_file(const std::string& path, std::time_t now) {
  const std::string content = read_file(path);
  const YAML::Node document = parse_document(content, path);
  switch_draft draft;
  draft.now_sec = static_cast<uint32>(now);
  read_switch(yaml_value(document, "the switch file", path), draft);
  if (draft.data.name.empty()) fail_at(path, 1, "a switch file needs a 'switch' with a 'name'");
  if (draft.data.mgmt_device.empty()) draft.data.mgmt_device = first_kernel_device();
  return build_machine(std::move(draft), path);
}

}  // namespace host
