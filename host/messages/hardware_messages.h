// Messages of the hardware: the chassis, its cards, the network devices of the machine that it runs on.
#pragma once

#include "messages/messages.h"
#include "platform/ip_statistics.h"
#include "platform/mts.h"
#include "platform/platform_data.h"

namespace host {

enum { SAP_HARDWARE = 199 };

struct chassis_record {
  be32 chassis_type;
  be32 num_slots;
  platform_runtime_param_t management;  // its kernel devices
};
static_assert(sizeof(chassis_record) == 40);

struct card_request {
  be32 slot;  // from 0
};
static_assert(sizeof(card_request) == 4);

struct card_record {
  be32 slot;
  be32 card_type;
  be32 shares_resources;  // 0: no
};
static_assert(sizeof(card_record) == 12);

struct device_request {
  char name[16];  // of a device, zero-padded; at most 15 characters
};
static_assert(sizeof(device_request) == 16);

// A name of a device: its characters follow, without a zero.
struct device_name_record {
  be32 if_index;
  be16 length;
};
static_assert(sizeof(device_name_record) == 6);

// Opcode                        request         record of the answer
enum hardware_opcode : mts_opc_t {
  HARDWARE_OPC_CHASSIS = 1,          // none            chassis_record
  HARDWARE_OPC_CARD = 2,             // card_request    card_record; PM_ERR_NO_SUCH_INTERFACE for an empty slot
  HARDWARE_OPC_DEVICE_COUNTERS = 3,  // device_request  pm_proc_net_dev_stats_t; the same for an unknown device
  HARDWARE_OPC_DEVICE_NAMES = 4,     // none            device_name_record and the name, for each name of a device
  HARDWARE_OPC_CLEAR_DEVICE = 5      // device_request  none: its counters start from 0; the same for an unknown device
};

}  // namespace host
