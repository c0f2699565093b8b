#include "settings/trial.h"

#include <utility>

#include "switch/clock.h"

namespace host {
namespace {

int num_trials = 0;

// Functions that are not overridden change only the model.
class trial_source final : public switch_source {
 public:
  explicit trial_source(switch_source& real) : real_(real), began_sec_(static_cast<uint32>(clock_now())) {}

  void complete(interface& port, detail needed) override { real_.complete(port, needed); }
  bool knows_all_fields() const override { return real_.knows_all_fields(); }
  // A source that counts when it is refreshed has the counters of the moment at which the trial began.
  bool update_statistics(interface& port, uint32 now_sec) override {
    return real_.update_statistics(port, real_.counts_at_refresh() ? began_sec_ : now_sec);
  }
  bool counts_at_refresh() const override { return real_.counts_at_refresh(); }
  std::optional<std::string> baseline_file() const override { return real_.baseline_file(); }
  uint32 check_settings(const interface& port, const port_settings& before) const override {
    return real_.check_settings(port, before);
  }
  uint32 apply_settings(interface& port, const port_settings& before) override {
    const uint32 status = real_.check_settings(port, before);
    return status != 0 ? status : switch_source::apply_settings(port, before);
  }
  bool applies_setting(uint8 type) const override { return real_.applies_setting(type); }
  bool hands_settings_to_members() const override { return real_.hands_settings_to_members(); }
  bool allows_sub_interfaces_of_switched_ports() const override {
    return real_.allows_sub_interfaces_of_switched_ports();
  }
  std::unique_ptr<table_reader> open_table(const machine& model, table_id table,
                                           const std::vector<if_index_t>& interfaces) override {
    return real_.open_table(model, table, interfaces);
  }
  std::optional<std::vector<kernel_device>> devices() const override { return real_.devices(); }
  std::optional<kernel_system> system() const override { return real_.system(); }
  std::optional<kernel_device> find_device(if_index_t if_index) const override { return real_.find_device(if_index); }
  std::vector<if_index_t> interfaces_towards(const std::string& address) const override {
    return real_.interfaces_towards(address);
  }

 private:
  switch_source& real_;
  uint32 began_sec_;
};

}  // namespace

trial::trial(trial_state& state) : state_(state), other_source_(std::make_unique<trial_source>(the_source())) {
  swap();
  ++num_trials;
}

trial::~trial() {
  --num_trials;
  swap();
}

bool trial::is_running() { return num_trials > 0; }

void trial::swap() {
  std::swap(the_machine(), state_.model);
  swap_journal(state_.journal);
  swap_source(other_source_);
}

}  // namespace host
