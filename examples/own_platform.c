/*
 * A platform of one's own: what one display, the descriptions of ports, needs of it. The library looks for a function
 * of the platform when it first calls it; those that a program leaves out are missed by the displays that need them.
 *
 *   cc own_platform.c $(pkg-config --cflags --libs pmcli) -o own_platform
 */
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "platform/cmd_channel.h"
#include "platform/if_index.h"
#include "platform/port_manager.h"
#include "pmcli/command.h"
#include "pmcli/displays.h"
#include "pmcli/headers.h"

/* ---- The output channel: text only. Every value of this display is a text or an interface. */

struct cmd_rx_handle_t {
  int unused;
};
struct cmd_tuple_t {
  uint32 id;
  const void* value;
};

cmd_rx_handle_t* cmd_paraminfo_to_rxhandle(paraminfo_t* param) {
  static cmd_rx_handle_t handle;
  (void)param;
  return &handle;
}

cmd_tuple_t* cmd_tuple(uint32 id, const void* value) {
  static cmd_tuple_t tuples[16];
  static unsigned next;
  cmd_tuple_t* tuple = &tuples[next++ % 16];
  tuple->id = id;
  tuple->value = value;
  return tuple;
}

static const char* text_of(const cmd_tuple_t* tuple, char* buffer) {
  if (tuple->id >> 24 == CMD_TYPE_IF_INDEX) return sprintf_if_index(buffer, *(const if_index_t*)tuple->value);
  return (const char*)tuple->value;
}

void cmd_prt(cmd_rx_handle_t* handle, const char* format, ...) {
  va_list tuples;
  (void)handle;
  va_start(tuples, format);
  while (*format != '\0') {
    char cell[16] = "", name[64];
    size_t length = *format == '%' ? strcspn(format, "s") + 1 : strcspn(format, "%");
    if (*format != '%') {
      printf("%.*s", (int)length, format);
    } else if (length < sizeof cell) {
      memcpy(cell, format, length); /* a placeholder is one of printf, too */
      printf(cell, text_of(va_arg(tuples, cmd_tuple_t*), name));
    }
    format += length;
  }
  va_end(tuples);
}

void cmd_print_short(cmd_rx_handle_t* handle) { (void)handle; }
void cmd_prt_send(cmd_rx_handle_t* handle) { (void)handle; }

/* ---- Interface indexes: kind, slot and port, a byte each. */

static if_index_t ethernet(uint32 slot, uint32 port) { return IF_TYPE_ETHERNET << 24 | slot << 16 | port << 8; }

int32 if_index_get_type(if_index_t if_index, if_index_type_t* type) {
  *type = if_index >> 24;
  return 0;
}
boolean if_index_is_sub_intf(if_index_t if_index) { return (if_index & 0xFF) != 0; }
char* sprintf_if_index(char* buffer, if_index_t if_index) {
  sprintf(buffer, "Ethernet%u/%u", (if_index >> 16 & 0xFF) + 1, (if_index >> 8 & 0xFF) + 1);
  return buffer;
}

/* ---- The port manager: a record for a port. The library frees it. */

int32 pm_cmi_get_port_config(mts_q_handle_t q, uint32 version, uint32 instance, const if_index_range_t* range,
                             uint32* count, pm_port_info_t** records, int32 timeout) {
  (void)q, (void)version, (void)instance, (void)timeout;
  *records = (pm_port_info_t*)calloc(1, sizeof **records);
  if (*records == NULL) return -1;
  be32_set(&(*records)->if_index, range->low);
  sprintf((*records)->port_name, "Desk %u", (unsigned)(range->low >> 8 & 0xFF) + 1);
  *count = 1;
  return 0;
}

/* ---- The shell: a parameter block for each interface. */

int main(void) {
  paraminfo_t block = {.parameter_count = 1, .command_id = DISPLAY_DESCRIPTION, .prc_mode = PRC_MODE_SHOW};
  if_index_t port = ethernet(0, 0);
  intf_range_t range = {.size = sizeof range, .range_count = 1, .range = {{port, port}}};
  param_arg_t interfaces = {.type = PARAM_TYPE_INTERFACES, .interface_mask = IF_MASK_ETHERNET, .arg = &range};
  block.arg_list[0] = &interfaces;
  pm_pcm_cli_show_header(&block);
  interfaces.arg = &port;
  for (uint32 i = 0; i < 3; ++i) {
    port = ethernet(0, i);
    pm_cli_show_eth_port_config(&block);
  }
  return 0;
}
