/*
 * Module resources: how a line card shares out buffer credits, performance buffers and bandwidth. Plain text.
 *
 * The tree of categories comes from the port manager in wire format.
 */
#ifndef PMCLI_MODULE_H
#define PMCLI_MODULE_H

#include "platform/module_resources.h"
#include "platform/paraminfo.h"
#include "platform/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/*
 * The resources of the module in a slot (from 1), asked of the port manager. Returns 0 when they were shown or politely
 * refused, 1 when the request failed or nothing came; why is printed.
 */
uint32 pm_cli_show_mod_resources(paraminfo_type* p, uint8 module_number);

/* The three lines above the groups. */
void pm_print_module_resources_header(void);

/*
 * Each prints one node with its children and adds the bytes that it took to `*size`, none for a node of another kind.
 * The caller vouches for the node: all that it counts must be readable.
 */
void pm_cli_show_global_buf_group_resources(pm_mod_resource_alloc_resp_data_t* cat_data, uint32* size);
void pm_cli_show_port_group_resources(pm_mod_resource_alloc_resp_data_t* cat_data, uint32* size);
void pm_cli_show_local_buf_group_resources(pm_mod_resource_alloc_resp_data_t* cat_data, uint32* size);
void pm_cli_show_port_resources(pm_mod_resource_alloc_resp_data_t* cat_data, uint32* size);

#ifdef __cplusplus
}
#endif
#endif
