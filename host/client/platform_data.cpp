#include "platform/platform_data.h"

#include "client/request.h"
#include "messages/hardware_messages.h"
#include "platform/if_index.h"
#include "platform/syserr.h"

using namespace host;

namespace {

syserr_t ask_chassis(chassis_record& chassis) {
  return ask_record({client_queue(), SAP_HARDWARE, HARDWARE_OPC_CHASSIS}, {}, writable_bytes_of(chassis));
}

syserr_t ask_card(uint32 slot, card_record& card) {
  const call to{client_queue(), SAP_HARDWARE, HARDWARE_OPC_CARD};
  return ask_record(answered_by_errors(to), bytes_of(card_request{slot}), writable_bytes_of(card));
}

// The card that carries an interface.
syserr_t ask_card_of(if_index_t if_index, card_record& card) {
  uint32 slot = 0;
  return if_index_get_slot(if_index, &slot) == 0 ? ask_card(slot, card) : PM_ERR_NO_SUCH_INTERFACE;
}

}  // namespace

platform_runtime_param_t platform_runtime_param_array[PLATFORM_RUNTIME_PARAMS];

int32 pdb_get_chassis_type(uint32* type) {
  if (type == nullptr) return PM_ERR_GENERAL;
  chassis_record chassis{};
  const syserr_t error = ask_chassis(chassis);
  if (error == 0) *type = chassis.chassis_type;
  return error;
}

// Readers of the table look up the row first: the row of this machine is filled then. Without an answer it names no
// device.
uint32 get_platform_runtime_index(void) {
  chassis_record chassis{};
  ask_chassis(chassis);
  const uint32 index = chassis.chassis_type % PLATFORM_RUNTIME_PARAMS;
  platform_runtime_param_array[index] = chassis.management;
  return index;
}

int32 get_platform_info(platform_info_t* info) {
  if (info == nullptr) return PM_ERR_GENERAL;
  chassis_record chassis{};
  const syserr_t error = ask_chassis(chassis);
  if (error == 0) info->num_slots = chassis.num_slots;
  return error;
}

int32 get_card_module_info(if_index_t if_index, card_module_info_t* info) {
  if (info == nullptr) return PM_ERR_NO_SUCH_INTERFACE;
  card_record card{};
  const syserr_t error = ask_card_of(if_index, card);
  if (error == 0) info->card_type = card.card_type;
  return error;
}

// Simulated switches have no line cards of these two families.
boolean pm_is_tamber_lindo_linecard(uint32) { return 0; }
boolean pm_is_corvid_linecard(uint32) { return 0; }

boolean pdb_is_module_tamber(uint32 module_key) {
  constexpr uint32 kKeyOfSlot = 256, kOffset = 2;  // modules count from 1
  if (module_key < kKeyOfSlot || module_key % kKeyOfSlot != kOffset) return 0;
  card_record card{};
  return ask_card(module_key / kKeyOfSlot - 1, card) == 0 && card.shares_resources != 0 ? 1 : 0;
}

// This machine is one context.
uint32 sysmgr_vdc_get(void) { return 1; }

// Line cards are nodes of their own, numbered by slot from 1.
int32 idxmap_node_by_if_index(if_index_t if_index, uint32* node) {
  if (node == nullptr) return PM_ERR_NO_SUCH_INTERFACE;
  card_record card{};
  const syserr_t error = ask_card_of(if_index, card);
  if (error == 0) *node = card.slot + 1;
  return error;
}
