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
 * Shows the resources of the module in a slot (from 1). Whether it has any comes from the platform's database, the tree
 * from the port manager, on the queue of the command.
 *
 * Returns 0 when they were shown; when the module has none, its line card failed or the answer is about another module
 * or has values of its own, which is printed; and, printing nothing, when the command only asks for configuration text
 * (`ascii_gen`). Returns 1 silently for a null block, and after the reason was printed when the request failed or its
 * answer is empty.
 */
uint32 pm_cli_show_mod_resources(paraminfo_type* p, uint8 module_number);

/* Prints the three lines above the groups. */
void pm_print_module_resources_header(void);

/*
 * Each prints one node of the tree with its children and adds the bytes that it took to `*size`. The first takes a node
 * of any kind for a group; the others print "Invalid payload" and the kind of a node of another kind, and add nothing.
 * The node is in wire format and stays the caller's, who vouches for it: all that it counts must be readable. The last
 * does not end its line.
 */
void pm_cli_show_global_buf_group_resources(pm_mod_resource_alloc_resp_data_t* cat_data, uint32* size);
void pm_cli_show_port_group_resources(pm_mod_resource_alloc_resp_data_t* cat_data, uint32* size);
void pm_cli_show_local_buf_group_resources(pm_mod_resource_alloc_resp_data_t* cat_data, uint32* size);
void pm_cli_show_port_resources(pm_mod_resource_alloc_resp_data_t* cat_data, uint32* size);

#ifdef __cplusplus
}
#endif
#endif
