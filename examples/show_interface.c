/*
 * "show interface" of four ports of a simulated switch: as text, as JSON, and value by value.
 *
 *   cc show_interface.c $(pkg-config --cflags --libs pmhost) -o show_interface
 */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "pmcli/command.h"
#include "pmcli/displays.h"
#include "pmhost/pmhost.h"

static void write_text(void* context, const char* text, size_t size) { fwrite(text, 1, size, (FILE*)context); }

static void print_mtu(void* context, const pmhost_value_t* value) {
  (void)context;
  if (value->key != NULL && strcmp(value->key, "mtu_bytes") == 0) fprintf(stderr, "MTU: %s bytes\n", value->text);
}

int main(int argc, char** argv) {
  char* error = NULL;
  pmhost_t* host = pmhost_open(argc > 1 ? argv[1] : "campus.yaml", &error);
  pmhost_command_t* command = host == NULL ? NULL : pmhost_command(host, DISPLAY_DETAIL, "ethernet 1/1-4", &error);
  if (command == NULL) {
    fprintf(stderr, "show_interface: %s\n", error);
    free(error);
    pmhost_close(host);
    return 1;
  }
  int code = pmhost_show(command, pm_cli_show_eth_port_config);

  pmhost_output_t output = {.form = PMHOST_JSON, .write = write_text, .value = print_mtu, .context = stdout};
  pmhost_set_output(host, &output);
  if (code == PMHOST_DONE) code = pmhost_show(command, pm_cli_show_eth_port_config);

  pmhost_end(command);
  pmhost_close(host);
  return code;
}
