// Storing the answers of the kernel in a folder (capture_format.h).
#pragma once

#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "base/replace_file.h"
#include "source/kernel/anonymous.h"
#include "source/kernel/capture_format.h"
#include "source/kernel/kernel_source.h"

namespace host {

// Why a folder cannot be used: one sentence.
struct capture_error : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// The only capture of the process: all requests to the kernel pass it as long as it lives. Other processes, which a
// fork made, store nothing.
class capture {
 public:
  // Creates the folder, or takes an empty one. Throws capture_error.
  explicit capture(const std::string& directory, bool is_anonymous = false);
  ~capture();
  capture(const capture&) = delete;
  capture& operator=(const capture&) = delete;

  // Adds a line to the index, unless it has the same line.
  void add_line(const std::string& line);
  void add_baseline(uint32 device, const counter_baseline& baseline);
  void add_switch_name(const std::string& name);

  // Stores an answer in a file of its own. `error` is an errno.
  void add_messages(int netlink_bus, const nlmsghdr& request, std::string messages, int error);
  void add_ioctl(const std::string& device, const void* before, const void* after, int error);
  void add_table(const std::string& text);
  void add_lldp(const lldp_answer& answer);

  // Has a source read what no command has read so far, so that the folder has the answers for every display.
  void complete(const machine& model, switch_source& source);

  // Completes the index. Returns 0, or the errno of the first write that failed.
  int finish();

 private:
  friend class captured_channel;

  void add_answer(const captured_request& request, std::string_view answer, int error);

  bool is_own_process() const;
  void write_file(const std::string& name, std::string_view text);
  void write_index(const std::string& line);

  std::string directory_;
  std::optional<anonymiser> anonymiser_;
  open_file index_;
  pid_t process_;
  kernel_io before_;
  kernel_table_opener table_before_;
  std::set<std::string> lines_;
  std::vector<class captured_channel*> channels_;  // that are open
  uint32 answers_ = 0;
  int error_ = 0;
  bool is_finished_ = false;
};

// The devices of the kernel, captured: the index has their interfaces and baselines.
class capturing_source final : public kernel_source {
 public:
  explicit capturing_source(capture& to, requested_interfaces requested = {}, const std::string& baseline_file = {},
                            const std::string& names_file = {});

 protected:
  std::vector<mapped_device> map(const std::vector<kernel_link>& links, uint32 management) override;
  const counter_baseline* find_baseline(const kernel_link& link) const override;
  bool may_read_counters_alone() const override { return false; }

 private:
  capture& capture_;
};

}  // namespace host
