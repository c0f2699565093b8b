// Which interfaces exist: the shell's callback before a command runs over all interfaces of a kind or over a range.

#include <algorithm>
#include <bit>
#include <cstdio>
#include <cstdlib>

#include "command/frame.h"
#include "platform/if_index.h"
#include "platform/port_manager.h"
#include "platform/startup_config.h"
#include "platform/vsh.h"
#include "pmcli/displays.h"
#include "pmcli/selection.h"
#include "support/heap.h"
#include "support/interface_masks.h"
#include "support/lazily.h"
#include "support/listing.h"
#include "support/scope.h"

using namespace pmcli;

namespace {

constexpr int32 kFailure = -1;
constexpr int32 kSuccess = 1;
constexpr int32 kListingTimeout = 60;

// The kind of interface that the port manager lists for a bit of the mask.
struct listing_kind {
  interface_mask_t mask;
  if_index_type_t type;
};

constexpr listing_kind kListingKinds[] = {
    {IF_MASK_FC, IF_TYPE_FC},
    {IF_MASK_BAY, IF_TYPE_FC},
    {IF_MASK_EXTERNAL_FC, IF_TYPE_FC},
    {IF_MASK_ETHERNET, IF_TYPE_ETHERNET},
    {IF_MASK_ETHERNET_L3, IF_TYPE_ETHERNET_L3},
    {IF_MASK_MGMT, IF_TYPE_MGMT},
    {IF_MASK_ISCSI, IF_TYPE_ISCSI},
    {IF_MASK_EXTERNAL, IF_TYPE_EXTERNAL},
    {IF_MASK_LOOPBACK, IF_TYPE_LOOPBACK},
    {IF_MASK_SATELLITE, IF_TYPE_SATELLITE},
};

if_index_type_t listing_type(interface_mask_t mask) {
  for (const listing_kind& kind : kListingKinds)
    if (kind.mask == mask) return kind.type;
  return IF_TYPE_NONE;
}

interface_mask_t interface_mask_of(const paraminfo_t* param) {
  const param_arg_t* const argument = param->arg_list[0];
  return argument != nullptr ? argument->interface_mask : 0;
}

// The ranges that the user named; none when he named no interface.
const intf_range_t* named_ranges(const paraminfo_t* param) {
  const param_arg_t* const argument = find_argument(param, 0);
  if (argument == nullptr) return nullptr;
  const auto* const ranges = static_cast<const intf_range_t*>(argument->arg);
  return ranges->range_count != 0 ? ranges : nullptr;
}

using index_block = heap_block<if_index_t>;

void hand_over(if_index_list_t* list, index_block block, uint32 length) {
  list->length = length;
  list->list = block.release();
}

// Calls `visit` with each listed interface, once for each range that contains it.
template <typename Visitor>
void for_each_in_ranges(const interface_listing& listed, const intf_range_t& ranges, paraminfo_t* param,
                        Visitor visit) {
  const uint32 range_count = std::min<uint32>(ranges.range_count, PARAM_MAX_RANGES);
  listed.for_each([&](if_index_t if_index) {
    for (const vsh_intf_mono_range_t* range = ranges.range; range != ranges.range + range_count; ++range)
      if (if_index >= range->lower_if_index && if_index <= range->upper_if_index &&
          pm_cli_check_to_add_in_if_index_listing(if_index, param))
        visit(if_index);
  });
}

// Room for `count` interfaces, or null after two lines were printed. `told_size` is the size in the second line, in
// bytes.
index_block allocate_indexes(uint32 count, uint32 told_size, int line = __builtin_LINE()) {
  const uint32 size = count * static_cast<uint32>(sizeof(if_index_t));
  index_block block(static_cast<if_index_t*>(std::malloc(size)));
  if (block == nullptr) {
    report_malloc_failure(size, __FILE__, line);
    std::printf("error: malloc failure - size(%d)\n", static_cast<int32>(told_size));
  }
  return block;
}

index_block allocate_indexes(uint32 count, int line = __builtin_LINE()) {
  return allocate_indexes(count, count * static_cast<uint32>(sizeof(if_index_t)), line);
}

int32 list_ranges(const interface_listing& listed, const intf_range_t& ranges, paraminfo_t* param,
                  if_index_list_t* list) {
  uint32 count = 0;
  for_each_in_ranges(listed, ranges, param, [&](if_index_t) { ++count; });
  if (count == 0) return kSuccess;

  // A failure reports the size of the listing, not of this list, which is intended.
  index_block block = allocate_indexes(count, listed.size());
  if (block == nullptr) return kFailure;
  if_index_t* next = block.get();
  for_each_in_ranges(listed, ranges, param, [&](if_index_t if_index) { *next++ = if_index; });
  hand_over(list, std::move(block), count);
  return kSuccess;
}

int32 list_all(const interface_listing& listed, paraminfo_t* param, if_index_list_t* list) {
  if (listed.count() == 0) return kSuccess;
  const index_block accepted = allocate_indexes(listed.count());
  if (accepted == nullptr) return kFailure;
  uint32 count = 0;
  listed.for_each([&](if_index_t if_index) {
    if (pm_cli_check_to_add_in_if_index_listing(if_index, param)) accepted.get()[count++] = if_index;
  });
  if (count == 0) return kSuccess;

  index_block block = allocate_indexes(count);
  if (block == nullptr) return kFailure;
  std::copy_n(accepted.get(), count, block.get());
  hand_over(list, std::move(block), count);
  return kSuccess;
}

int32 list_inband(if_index_list_t* list) {
  index_block block = allocate_indexes(1);
  if (block == nullptr) return kFailure;
  *block = if_index_inband_get_active_sup_priority_hi();
  hand_over(list, std::move(block), 1);
  return kSuccess;
}

int32 ask_listing(paraminfo_t* param, uint32 config_type, if_index_type_t type, mts_msg_ref_t* answer) {
  if (config_type == ACFG_RUNNING) return pm_get_if_index_listing(type, param->q, answer, kListingTimeout);
  const char* const prefix = acfg_pinfo_startup_cfg_uri_prefix_get(param);
  return pm_get_startup_if_index_listing(prefix, type, param->q, answer, kListingTimeout);
}

int32 list_kind(paraminfo_t* param, uint32 config_type, interface_mask_t mask, if_index_list_t* list) {
  message answer(param->q);
  if (ask_listing(param, config_type, listing_type(mask), answer.ref()) != 0) {
    vsh_print_mts_error_message(VSH_MTS_ERROR_REQUEST, mts_errno_get(param->q));
    return kFailure;
  }
  answer.hold();
  const interface_listing listed(answer.ref());
  const intf_range_t* const ranges = named_ranges(param);
  const int32 result = ranges != nullptr ? list_ranges(listed, *ranges, param, list) : list_all(listed, param, list);
  if (result != kSuccess) return result;

  if (list->length != 0 && (mask == IF_MASK_BAY || mask == IF_MASK_EXTERNAL_FC))
    std::qsort(list->list, list->length, sizeof(if_index_t), lazily<compare_intf_bay_ext_aliases>);
  if (answer.drop() == 0) return kSuccess;
  vsh_print_mts_error_message(VSH_MTS_ERROR_REQUEST, mts_errno_get(param->q));
  std::free(list->list);
  *list = {};
  return kFailure;
}

// A family of interface names, given by its first character, that exactly one mask selects.
struct name_family {
  char first;
  interface_mask_t mask;
};

constexpr name_family kNameFamilies[] = {{'b', IF_MASK_BAY}, {'e', IF_MASK_EXTERNAL_FC}, {'f', IF_MASK_FC}};

}  // namespace

bool pm_cli_check_to_add_in_if_index_listing(if_index_t if_index, paraminfo_t* param) {
  const interface_mask_t mask = interface_mask_of(param);
  if ((mask & (IF_MASK_FC | IF_MASK_BAY | IF_MASK_EXTERNAL_FC)) == 0) return true;
  char name[8] = "";
  if (snprintf_if_index(name, sizeof name, if_index) < 1) return false;
  for (const name_family& family : kNameFamilies)
    if (name[0] == family.first) return mask == family.mask;
  return true;
}

int32 pm_cli_if_index_enum_func(paraminfo_t* param, if_index_list_t* ifindex_list_ptr) {
  *ifindex_list_ptr = {};
  if (param == nullptr) return kFailure;
  const uint32 config_type = acfg_pinfo_cfg_type_get(param);
  const interface_mask_t mask = interface_mask_of(param);
  if (mask > UINT32_MAX || !std::has_single_bit(mask)) {
    std::printf("error: iface_mask(%X) not valid\n", static_cast<uint32>(mask));
    return kFailure;
  }
  if (mask == IF_MASK_INBAND) return list_inband(ifindex_list_ptr);
  if ((mask & kMaskNotEnumerable) != 0) return kFailure;
  return list_kind(param, config_type, mask, ifindex_list_ptr);
}
