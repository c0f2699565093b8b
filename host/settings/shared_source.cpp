#include "settings/shared_source.h"

#include <fmt/format.h>

#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "base/port_status.h"
#include "base/printable.h"
#include "settings/change_feed.h"
#include "settings/session.h"
#include "switch/if_index_layout.h"
#include "switch/source.h"

namespace host {
namespace {

// Terminals are named by shells.
std::string shown_terminal(std::string_view terminal) {
  constexpr std::size_t kMostCharacters = 32;
  std::string text;
  append_printable(text, terminal.substr(0, kMostCharacters));
  return text;
}

// "held by ann on pts/3 for 12 s"
std::string text_of_holder(switch_session& holder) {
  const session_owner& owner = holder.owner();
  const std::string place =
      owner.terminal.empty() ? fmt::format("process {}", owner.process) : shown_terminal(owner.terminal);
  return fmt::format("held by {} on {} for {} s", shown_name(owner), place, holder.seconds_to_confirm().value_or(0));
}

// The status with which a change of an interface is refused; 0: none of the interfaces that it is about is held.
uint32 refusal_of(if_index_t if_index) {
  switch_session* const holder = holder_of(if_index);
  if (holder == nullptr) return 0;
  if (holder == &the_session()) return status_of_text("a commit of this session waits for 'confirm'");
  return status_of_passing_text(text_of_holder(*holder));
}

// Sub-interfaces are created and deleted with their parent as it is.
uint32 refusal_of_all(std::span<const if_index_t> interfaces) {
  if (waiting_sessions().empty()) return 0;
  for (const if_index_t it : interfaces) {
    uint32 status = refusal_of(it);
    if (status == 0 && if_index_is_sub_intf(it) != 0) status = refusal_of(parent_of(it));
    if (status != 0) return status;
  }
  return 0;
}

// Members take settings of their port-channel.
uint32 refusal_of_setting(const interface& port) {
  if (waiting_sessions().empty()) return 0;
  if (const uint32 status = refusal_of(port.if_index); status != 0) return status;
  for (const if_index_t member : the_machine().members_of(port.if_index))
    if (const uint32 status = refusal_of(member); status != 0) return status;
  return 0;
}

class shared_source final : public switch_source {
 public:
  explicit shared_source(std::unique_ptr<switch_source> of) : of_(std::move(of)) {}

  void refresh(machine& model) override { of_->refresh(model); }
  bool refresh_counters(machine& model) override { return of_->refresh_counters(model); }
  void complete(interface& port, detail needed) override { of_->complete(port, needed); }
  bool knows_all_fields() const override { return of_->knows_all_fields(); }
  bool update_statistics(interface& port, uint32 now_sec) override { return of_->update_statistics(port, now_sec); }
  void clear_counters(interface& port, uint32 now_sec) override {
    of_->clear_counters(port, now_sec);
    publish_cleared(port.if_index);
  }
  bool counts_at_refresh() const override { return of_->counts_at_refresh(); }
  std::optional<double> rate_seconds() const override { return of_->rate_seconds(); }
  std::optional<std::string> baseline_file() const override { return of_->baseline_file(); }
  int write_baselines() override { return of_->write_baselines(); }
  uint32 check_settings(const interface& port, const port_settings& before) const override {
    return of_->check_settings(port, before);
  }
  uint32 apply_settings(interface& port, const port_settings& before) override {
    uint32 status = refusal_of_setting(port);
    if (status == 0) status = of_->apply_settings(port, before);
    if (status == 0) publish_settings(port, before);
    return status;
  }
  bool applies_setting(uint8 type) const override { return of_->applies_setting(type); }
  bool hands_settings_to_members() const override { return of_->hands_settings_to_members(); }
  bool allows_sub_interfaces_of_switched_ports() const override {
    return of_->allows_sub_interfaces_of_switched_ports();
  }
  uint32 create_interfaces(machine& model, std::span<const if_index_t> interfaces) override {
    uint32 status = refusal_of_all(interfaces);
    if (status == 0) status = of_->create_interfaces(model, interfaces);
    if (status == 0) publish_created(interfaces);
    return status;
  }
  uint32 delete_interfaces(machine& model, std::span<const if_index_t> interfaces) override {
    if (const uint32 status = refusal_of_all(interfaces); status != 0) return status;
    const changes_elsewhere made(interfaces);  // some are deleted even if the source refuses the others
    const uint32 status = of_->delete_interfaces(model, interfaces);
    made.publish();
    return status;
  }
  uint32 restore_interface(machine& model, const interface& deleted) override {
    uint32 status = refusal_of_all({&deleted.if_index, 1});
    if (status == 0) status = of_->restore_interface(model, deleted);
    if (status == 0) publish_created({&deleted.if_index, 1});
    return status;
  }
  uint32 store_changes(machine& model) override { return of_->store_changes(model); }
  uint32 store_waiting_commit(machine& model, uint32 commit) override {
    return of_->store_waiting_commit(model, commit);
  }
  uint32 store_confirmation(machine& model, uint32 commit) override { return of_->store_confirmation(model, commit); }
  void store_rollback(machine& model, uint32 commit) override { of_->store_rollback(model, commit); }
  std::unique_ptr<table_reader> open_table(const machine& model, table_id table,
                                           const std::vector<if_index_t>& interfaces) override {
    return of_->open_table(model, table, interfaces);
  }
  std::unique_ptr<event_reader> open_events() override { return open_change_feed(of_->open_events()); }
  std::optional<std::vector<kernel_device>> devices() const override { return of_->devices(); }
  std::optional<kernel_system> system() const override { return of_->system(); }
  bool may_have_device(std::string_view name) const override { return of_->may_have_device(name); }
  std::optional<kernel_device> find_device(if_index_t if_index) const override { return of_->find_device(if_index); }
  std::vector<if_index_t> interfaces_towards(const std::string& address) const override {
    return of_->interfaces_towards(address);
  }

 private:
  std::unique_ptr<switch_source> of_;
};

}  // namespace

void share_source() {
  std::unique_ptr<switch_source> real;
  swap_source(real);
  set_source(std::make_unique<shared_source>(std::move(real)));
}

}  // namespace host
