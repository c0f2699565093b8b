// A source that stores its changes.
#pragma once

#include <memory>
#include <span>
#include <utility>

#include "store/switch_store.h"
#include "switch/source.h"

namespace host {

// `Source` is one whose state is in the model alone.
template <typename Source>
class stored_source final : public Source {
 public:
  explicit stored_source(std::unique_ptr<switch_store> store) : store_(std::move(store)) {}

  void clear_counters(interface& port, uint32 now_sec) override {
    if (!is_counted_by_device(the_machine(), port)) store_->note(port);
    Source::clear_counters(port, now_sec);
  }

  uint32 apply_settings(interface& port, const port_settings& before) override {
    interface noted = port;
    noted.settings = before;
    store_->note(std::move(noted));
    return Source::apply_settings(port, before);
  }

  uint32 create_interfaces(machine& model, std::span<const if_index_t> interfaces) override {
    for (const if_index_t it : interfaces) store_->note_creation(model, it);
    return Source::create_interfaces(model, interfaces);
  }

  uint32 delete_interfaces(machine& model, std::span<const if_index_t> interfaces) override {
    for (const if_index_t it : interfaces) store_->note_deletion(model, it);
    return Source::delete_interfaces(model, interfaces);
  }

  uint32 restore_interface(machine& model, const interface& deleted) override {
    store_->note_creation(model, deleted.if_index);
    return Source::restore_interface(model, deleted);
  }

  uint32 store_changes(machine& model) override { return store_->store_changes(model); }
  uint32 store_waiting_commit(machine& model, uint32 commit) override {
    return store_->store_waiting_commit(model, commit);
  }
  uint32 store_confirmation(machine& model, uint32 commit) override {
    return store_->store_confirmation(model, commit);
  }
  void store_rollback(machine& model, uint32 commit) override { store_->store_rollback(model, commit); }

 private:
  std::unique_ptr<switch_store> store_;
};

}  // namespace host
