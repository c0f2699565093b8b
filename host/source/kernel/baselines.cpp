#include "source/kernel/baselines.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <sstream>

#include "base/digits.h"
#include "base/replace_file.h"

namespace host {
namespace {

// In place of a counter that is not reported.
constexpr char kAbsent[] = "-";

bool read_driver_columns(std::istream& text, driver_counter_values& reported) {
  for (auto& counter : reported) {
    std::string word;
    if (!(text >> word)) return false;
    if (word == kAbsent) continue;
    if (!read_number(word, counter.emplace())) return false;
  }
  return true;
}

}  // namespace

bool read_baseline(const std::string& line, uint32& number, counter_baseline& baseline) {
  std::istringstream text(line);
  std::string mac;
  if (!(text >> number >> mac >> baseline.cleared_sec) || !read_hex(mac, baseline.mac)) return false;
  for (const auto column : kDeviceCounters)
    if (!(text >> baseline.counted.*column)) return false;
  return read_driver_columns(text, baseline.reported);
}

std::string baseline_text(uint32 number, const counter_baseline& baseline) {
  std::string line = std::to_string(number) + " " + hex_of(baseline.mac) + " " + std::to_string(baseline.cleared_sec);
  for (const auto column : kDeviceCounters) line += " " + std::to_string(baseline.counted.*column);
  for (const auto& counter : baseline.reported) line += " " + (counter ? std::to_string(*counter) : kAbsent);
  return line;
}

std::string kernel_namespace() {
  struct stat space {};
  return std::to_string(stat("/proc/self/ns/net", &space) == 0 ? space.st_ino : 0);
}

std::string running_system() {
  std::string boot;
  std::getline(std::ifstream("/proc/sys/kernel/random/boot_id"), boot);
  return "boot " + boot + " namespace " + kernel_namespace();
}

void counter_baselines::read() {
  if (path_.empty() || is_changed_) return;
  kept_.clear();
  std::ifstream file(path_);
  std::string line;
  if (!std::getline(file, line) || line != running_system()) return;
  while (std::getline(file, line)) {
    uint32 number = 0;
    counter_baseline baseline;
    if (read_baseline(line, number, baseline)) kept_[number] = baseline;
  }
}

int counter_baselines::write() {
  if (path_.empty() || !is_changed_) return 0;
  std::string text = running_system() + "\n";
  for (const auto& [number, baseline] : kept_) text += baseline_text(number, baseline) + "\n";
  const int error = replace_file(path_, text, nullptr);
  is_changed_ = error != 0;
  return error;
}

void counter_baselines::put(uint32 number, const counter_baseline& baseline) {
  kept_[number] = baseline;
  is_changed_ = true;
}

const counter_baseline* counter_baselines::find(uint32 number, const std::array<uint8, 6>& mac,
                                                const device_counters& counted) const {
  const auto found = kept_.find(number);
  if (found == kept_.end() || found->second.mac != mac) return nullptr;
  return counted_since(counted, found->second.counted) ? &found->second : nullptr;
}

}  // namespace host
