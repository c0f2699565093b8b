#include "host/source/kernel/kernel_recording.h"

#include <linux/ethtool.h>
#include <linux/ethtool_netlink.h>
#include <linux/genetlink.h>

#include <algorithm>
#include <cerrno>
#include <optional>
#include <utility>

namespace host {
namespace {

recorded_kernel* the_recording = nullptr;

constexpr uint32 kPort = 4711;
constexpr std::size_t kMessagesOfDatagram = 2;

// What a receive gives: a datagram, or an errno.
struct event {
  std::vector<char> bytes;
  int error = 0;
};

void append(std::vector<char>& datagram, recorded_message message, const nlmsghdr& request, uint16 flags) {
  auto& head = *reinterpret_cast<nlmsghdr*>(message.data());
  head.nlmsg_len = static_cast<uint32>(message.size());
  head.nlmsg_seq = request.nlmsg_seq;
  head.nlmsg_pid = kPort;
  head.nlmsg_flags = flags;
  message.resize(MNL_ALIGN(message.size()));
  datagram.insert(datagram.end(), message.begin(), message.end());
}

// A message that ends an answer: of a dump, or with an error, where 0 is good.
recorded_message last_message(uint16 type, int error, const nlmsghdr& request) {
  struct {
    nlmsghdr head;
    int error;
    nlmsghdr request;
  } last{{}, -error, request};
  last.head.nlmsg_type = type;
  const std::size_t size = type == NLMSG_DONE ? sizeof(nlmsghdr) + sizeof(int) : sizeof last;
  const auto* const bytes = reinterpret_cast<const char*>(&last);
  return {bytes, bytes + size};
}

netlink_request family_message() {
  netlink_request message(GENL_ID_CTRL, 0);
  message.extra<genlmsghdr>().cmd = CTRL_CMD_NEWFAMILY;
  mnl_attr_put_u16(&message.head(), CTRL_ATTR_FAMILY_ID, recorded_kernel::kEthtoolFamily);
  mnl_attr_put_strz(&message.head(), CTRL_ATTR_FAMILY_NAME, ETHTOOL_GENL_NAME);
  nlattr* const groups = mnl_attr_nest_start(&message.head(), CTRL_ATTR_MCAST_GROUPS);
  nlattr* const group = mnl_attr_nest_start(&message.head(), 1);
  mnl_attr_put_u32(&message.head(), CTRL_ATTR_MCAST_GRP_ID, recorded_kernel::kMonitorGroup);
  mnl_attr_put_strz(&message.head(), CTRL_ATTR_MCAST_GRP_NAME, ETHTOOL_MCGRP_MONITOR_NAME);
  mnl_attr_nest_end(&message.head(), group);
  mnl_attr_nest_end(&message.head(), groups);
  return message;
}

}  // namespace

class recorded_channel : public kernel_channel {
 public:
  explicit recorded_channel(int bus) : bus_(bus) {}
  uint32 port() const override { return kPort; }

  int send(const nlmsghdr& request) override {
    const question asked{bus_, request.nlmsg_type, *static_cast<const uint8*>(mnl_nlmsg_get_payload(&request))};
    ++the_recording->asked_[asked];
    if (is_at_dump_) {  // as the kernel does
      add_last(NLMSG_ERROR, EBUSY, request);
      return 0;
    }
    recorded_answer answer = the_recording->answer_to(asked, request);
    const bool is_dump = (request.nlmsg_flags & NLM_F_DUMP) == NLM_F_DUMP;
    if (answer.error != 0) {
      add_refusal(answer, request);
      return 0;
    }
    add(answer.messages, request, is_dump ? uint16{NLM_F_MULTI} : uint16{0}, take_disturbance(asked));
    if (is_dump) add_last(NLMSG_DONE, 0, request);
    if (!is_dump && (request.nlmsg_flags & NLM_F_ACK) != 0) add_last(NLMSG_ERROR, 0, request);
    is_at_dump_ = is_dump;
    return 0;
  }

  // Where nothing comes any more the real one would wait for ever.
  ssize_t receive(std::span<char> to, int& error) override {
    if (events_.empty()) {
      error = EAGAIN;
      return -1;
    }
    const event next = std::move(events_.front());
    events_.pop_front();
    if (events_.empty()) is_at_dump_ = false;
    error = next.error;
    if (next.error != 0) return -1;
    std::copy(next.bytes.begin(), next.bytes.end(), to.begin());
    return static_cast<ssize_t>(next.bytes.size());
  }

 private:
  std::optional<disturbance> take_disturbance(const question& asked) {
    auto& waiting = the_recording->known_[asked].disturbances;
    if (waiting.empty()) return std::nullopt;
    const disturbance next = waiting.front();
    waiting.pop_front();
    return next;
  }

  void add(std::vector<recorded_message>& messages, const nlmsghdr& request, uint16 flags,
           std::optional<disturbance> disturbed) {
    for (std::size_t at = 0; at < messages.size(); at += kMessagesOfDatagram) {
      event next;
      for (std::size_t i = at; i < std::min(at + kMessagesOfDatagram, messages.size()); ++i) {
        recorded_message& message = messages[i];
        if (message.size() > the_recording->longest) message.resize(std::max(the_recording->longest, sizeof(nlmsghdr)));
        const std::size_t place = next.bytes.size();
        append(next.bytes, message, request, flags);
        if (const auto claimed = the_recording->claimed_length; claimed && place != 0)
          std::memcpy(next.bytes.data() + place, &*claimed, sizeof *claimed);
      }
      if (at == 0 && disturbed == disturbance::lost) next = {{}, ENOBUFS};
      events_.push_back(std::move(next));
      if (disturbed == disturbance::interrupted) flags |= NLM_F_DUMP_INTR;
    }
    last_flags_ = flags;
  }

  // The kernel's words stand behind the head of the request.
  void add_refusal(const recorded_answer& answer, const nlmsghdr& request) {
    recorded_message message = last_message(NLMSG_ERROR, answer.error, request);
    if (!answer.words.empty()) {
      const nlattr head{static_cast<uint16>(sizeof(nlattr) + answer.words.size() + 1), NLMSGERR_ATTR_MSG};
      const auto* const bytes = reinterpret_cast<const char*>(&head);
      message.insert(message.end(), bytes, bytes + sizeof head);
      message.insert(message.end(), answer.words.c_str(), answer.words.c_str() + answer.words.size() + 1);
    }
    event next;
    append(next.bytes, std::move(message), request,
           answer.words.empty() ? uint16{0} : uint16{NLM_F_CAPPED | NLM_F_ACK_TLVS});
    events_.push_back(std::move(next));
  }

  void add_last(uint16 type, int error, const nlmsghdr& request) {
    event next;
    append(next.bytes, last_message(type, error, request), request, type == NLMSG_DONE ? last_flags_ : uint16{0});
    events_.push_back(std::move(next));
  }

  int bus_;
  std::deque<event> events_;
  bool is_at_dump_ = false;
  uint16 last_flags_ = NLM_F_MULTI;
};

// What is published waits until it is read.
class recorded_subscription : public kernel_channel {
 public:
  explicit recorded_subscription(int bus) : bus_(bus) {}
  uint32 port() const override { return kPort; }
  int send(const nlmsghdr&) override { return EOPNOTSUPP; }
  ssize_t receive(std::span<char> to, int& error) override {
    auto& waiting = the_recording->published_[bus_];
    error = waiting.empty() ? EAGAIN : waiting.front().error;
    if (waiting.empty()) return -1;
    const recorded_message message = std::move(waiting.front().message);
    waiting.pop_front();
    if (error != 0) return -1;
    std::copy(message.begin(), message.end(), to.begin());
    return static_cast<ssize_t>(message.size());
  }

 private:
  int bus_;
};

recorded_message recorded(netlink_request message) {
  const auto* const bytes = reinterpret_cast<const char*>(&message.head());
  return {bytes, bytes + message.head().nlmsg_len};
}

question recorded_kernel::ethtool(uint8 command) { return {NETLINK_GENERIC, kEthtoolFamily, command}; }

recorded_kernel::recorded_kernel() : before_(the_kernel_io()) {
  the_recording = this;
  the_kernel_io() = {open, answer_ioctl, answer_lldp, subscribe};
  answer({NETLINK_GENERIC, GENL_ID_CTRL, CTRL_CMD_GETFAMILY}, [this](const nlmsghdr&) {
    return has_ethtool ? recorded_answer{0, {recorded(family_message())}} : recorded_answer{ENOENT};
  });
}

recorded_kernel::~recorded_kernel() {
  the_kernel_io() = before_;
  the_recording = nullptr;
}

lldp_answer recorded_kernel::answer_lldp() { return the_recording->lldp; }

void recorded_kernel::tell(const question& asked, netlink_request message) {
  known_[asked].answer.messages.push_back(recorded(std::move(message)));
}

void recorded_kernel::refuse(const question& asked, int error) { known_[asked].answer.error = error; }

void recorded_kernel::answer(const question& asked, std::function<recorded_answer(const nlmsghdr&)> by) {
  known_[asked].by = std::move(by);
}

void recorded_kernel::disturb(const question& asked, disturbance how, uint32 times) {
  known_[asked].disturbances.assign(times, how);
}

uint32 recorded_kernel::times_asked(const question& asked) const {
  const auto found = asked_.find(asked);
  return found == asked_.end() ? 0 : found->second;
}

recorded_answer recorded_kernel::answer_to(const question& asked, const nlmsghdr& request) {
  const known& what = known_[asked];
  if (what.by) return what.by(request);
  if (what.answer.error != 0 || !what.answer.messages.empty()) return what.answer;
  return {(request.nlmsg_flags & NLM_F_DUMP) == NLM_F_DUMP ? 0 : EOPNOTSUPP};
}

void recorded_kernel::publish(int bus, netlink_request message) {
  published_[bus].push_back({recorded(std::move(message))});
}

void recorded_kernel::fail_to_publish(int bus, int error) { published_[bus].push_back({{}, error}); }

std::unique_ptr<kernel_channel> recorded_kernel::subscribe(int bus, std::span<const uint32> groups) {
  the_recording->groups_[bus].assign(groups.begin(), groups.end());
  return std::make_unique<recorded_subscription>(bus);
}

std::unique_ptr<kernel_channel> recorded_kernel::open(int bus) { return std::make_unique<recorded_channel>(bus); }

int recorded_kernel::answer_ioctl(const std::string& device, void* command) {
  ++the_recording->ioctls_;
  uint32 asked = 0;
  std::memcpy(&asked, command, sizeof asked);
  if (const auto recorded = the_recording->read_by_ioctl_.find({device, asked});
      recorded != the_recording->read_by_ioctl_.end()) {
    std::memcpy(command, recorded->second.data(), recorded->second.size());
    return 0;
  }
  const auto found = the_recording->modules_.find(device);
  if (found == the_recording->modules_.end()) return EOPNOTSUPP;
  const ioctl_module& module = found->second;
  if (asked == ETHTOOL_GMODULEINFO) {
    ethtool_modinfo info{};
    info.cmd = asked;
    info.eeprom_len = module.length;
    std::memcpy(command, &info, sizeof info);
    return 0;
  }
  ethtool_eeprom head{};
  std::memcpy(&head, command, sizeof head);
  if (asked != ETHTOOL_GMODULEEEPROM || head.offset + head.len > module.memory.size()) return EINVAL;
  std::memcpy(static_cast<char*>(command) + sizeof head, module.memory.data() + head.offset, head.len);
  return 0;
}

}  // namespace host
