#include "source/replay/replay_source.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <set>
#include <utility>

#include "base/port_status.h"
#include "source/kernel/links.h"

namespace host {
namespace {

// ---- The kernel -----------------------------------------------------------------------------------------------------

constexpr uint32 kReplayPort = 1;

// The answers of the only replay, and how many each request has got.
struct replayed_kernel {
  const capture_folder* folder = nullptr;
  std::map<std::pair<capture_bus, std::string>, std::size_t> given;
} the_replay;

// The next answer of a request; the last one is repeated. Null without one.
const captured_answer* find_answer(const captured_request& request) {
  const std::pair key(request.bus, request.key);
  const auto found = the_replay.folder->answers.find(key);
  if (found == the_replay.folder->answers.end()) return nullptr;
  std::size_t& given = the_replay.given[key];
  const captured_answer& answer = found->second[std::min(given, found->second.size() - 1)];
  ++given;
  return &answer;
}

const captured_answer& answer_to(const captured_request& request) {
  const captured_answer* const answer = find_answer(request);
  if (answer == nullptr)
    throw kernel_error("the capture has no answer to a request for '" + std::string(request_name(request)) +
                       "'. Capture again with this version of the program.");
  return *answer;
}

class replayed_channel final : public kernel_channel {
 public:
  explicit replayed_channel(int bus) : bus_(bus) {}
  uint32 port() const override { return kReplayPort; }

  int send(const nlmsghdr& request) override {
    const captured_answer& answer = answer_to(request_of(bus_, request));
    left_ = answer.bytes;
    error_ = answer.error;
    sequence_ = request.nlmsg_seq;
    return left_.empty() ? error_ : 0;
  }

  // As many whole messages as there is room for.
  ssize_t receive(std::span<char> to, int& error) override {
    std::size_t size = 0;
    while (const std::size_t length = message_length(left_.substr(size))) {
      if (size + length > to.size()) break;
      size += length;
    }
    error = error_ != 0 ? error_ : ENODATA;
    if (size == 0) return -1;
    std::copy_n(left_.data(), size, to.data());
    left_.remove_prefix(size);
    address_messages(to.first(size), sequence_, kReplayPort);
    return static_cast<ssize_t>(size);
  }

 private:
  int bus_;
  std::string_view left_;
  int error_ = 0;
  uint32 sequence_ = 0;
};

std::unique_ptr<kernel_channel> open_replayed(int bus) { return std::make_unique<replayed_channel>(bus); }

int ask_replayed(const std::string& device, void* command) {
  const std::size_t size = ioctl_size(command);
  const captured_answer& answer = answer_to(request_of_ioctl(device, command));
  if (answer.bytes.size() != size) return EINVAL;
  std::memcpy(command, answer.bytes.data(), size);
  return answer.error;
}

lldp_answer ask_replayed_lldpd() {
  const captured_answer& answer = answer_to(request_of_lldp());
  return {answer.error, read_lldp_text(answer.bytes)};
}

std::FILE* open_replayed_table() {
  const captured_answer* const answer = find_answer(request_of_table());
  if (answer == nullptr || answer->bytes.empty()) return nullptr;
  std::FILE* const table = std::tmpfile();
  if (table == nullptr) return nullptr;
  std::fwrite(answer->bytes.data(), 1, answer->bytes.size(), table);
  std::rewind(table);
  return table;
}

uint32 read_only_status() { return status_of_text("the switch is replayed from a capture and cannot be changed"); }

}  // namespace

// ---- The source -----------------------------------------------------------------------------------------------------

replay_source::replay_source(capture_folder folder)
    : folder_(std::move(folder)), before_(the_kernel_io()), table_before_(the_kernel_table_opener()) {
  the_replay = {&folder_, {}};
  the_kernel_io() = {open_replayed, ask_replayed, ask_replayed_lldpd};
  the_kernel_table_opener() = open_replayed_table;
}

replay_source::~replay_source() {
  the_kernel_io() = before_;
  the_kernel_table_opener() = table_before_;
  the_replay = {};
}

// An interface is that of the first device that has it.
std::vector<mapped_device> replay_source::map(const std::vector<kernel_link>& links, uint32) {
  std::vector<mapped_device> mapped;
  std::set<if_index_t> taken;
  for (const kernel_link& link : links) {
    const auto found = folder_.interfaces.find(link.number);
    if (found == folder_.interfaces.end() || !taken.insert(found->second.if_index).second) continue;
    const captured_interface& it = found->second;
    mapped.push_back({link.name, link.number, it.if_index, link.slave_kind == "bridge", it.reason});
  }
  return mapped;
}

const counter_baseline* replay_source::find_baseline(const kernel_link& link) const {
  if (const counter_baseline* const cleared_here = kernel_source::find_baseline(link)) return cleared_here;
  const auto found = folder_.baselines.find(link.number);
  return found == folder_.baselines.end() ? nullptr : &found->second;
}

std::string replay_source::name() const { return folder_.switch_name; }

std::optional<kernel_system> replay_source::system() const { return folder_.system; }

std::vector<if_index_t> replay_source::interfaces_towards(const std::string&) const { return {}; }

uint32 replay_source::check_settings(const interface&, const port_settings&) const { return read_only_status(); }
uint32 replay_source::apply_settings(interface&, const port_settings&) { return read_only_status(); }
uint32 replay_source::create_interfaces(machine&, std::span<const if_index_t>) { return read_only_status(); }
uint32 replay_source::delete_interfaces(machine&, std::span<const if_index_t>) { return read_only_status(); }
uint32 replay_source::restore_interface(machine&, const interface&) { return read_only_status(); }

}  // namespace host
