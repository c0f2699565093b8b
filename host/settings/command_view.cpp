#include "settings/command_view.h"

#include <algorithm>
#include <deque>
#include <utility>
#include <vector>

#include "settings/trial.h"

namespace host {
namespace {

std::vector<command_view*>& begun_views() {
  static std::vector<command_view*> all;
  return all;
}

// The oldest first.
std::deque<std::weak_ptr<machine>>& copies() {
  static std::deque<std::weak_ptr<machine>> all;
  return all;
}

void forget_released_copies() {
  std::erase_if(copies(), [](const auto& it) { return it.expired(); });
}

}  // namespace

// The list of views lives longer than that of the session of the process.
command_view::command_view() { begun_views(); }

void command_view::begin() {
  kept_.reset();
  if (!std::exchange(has_begun_, true)) begun_views().push_back(this);
}

void command_view::end() {
  kept_.reset();
  if (std::exchange(has_begun_, false)) std::erase(begun_views(), this);
}

void give_up_oldest_copies() {
  forget_released_copies();
  std::size_t num_interfaces = 0;
  for (const auto& it : copies()) num_interfaces += it.lock()->interfaces.size();
  while (num_interfaces > kMostKeptInterfaces && copies().size() > 1) {
    const std::shared_ptr<machine> oldest = copies().front().lock();
    num_interfaces -= oldest->interfaces.size();
    copies().pop_front();
    const std::vector<command_view*> all = begun_views();  // those that end leave the list
    for (command_view* const it : all)
      if (it->kept_ == oldest) it->end();
  }
}

void keep_views(const command_view* changing) {
  std::shared_ptr<machine> copy;
  const std::vector<command_view*> all = begun_views();
  for (command_view* const it : all) {
    if (it == changing) {
      it->end();
    } else if (it->kept_ == nullptr) {
      if (copy == nullptr) copy = std::make_shared<machine>(the_machine());
      it->kept_ = copy;
    }
  }
  if (copy == nullptr) return;
  copies().push_back(copy);
  give_up_oldest_copies();
}

std::size_t num_kept_machines() {
  forget_released_copies();
  return copies().size();
}

view_scope::view_scope(command_view& view) {
  if (view.kept_ == nullptr || trial::is_running()) return;
  kept_ = view.kept_;
  std::swap(the_machine(), *kept_);
}

view_scope::~view_scope() {
  if (kept_ != nullptr) std::swap(the_machine(), *kept_);
}

}  // namespace host
