/* What a program may ask of pmhost.h, and what it may do wrong: host_calls SWITCH_FILE. Prints what fails. */
#include <malloc.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "platform/port_manager.h"
#include "pmcli/clear.h"
#include "pmcli/command.h"
#include "pmcli/displays.h"
#include "pmcli/headers.h"
#include "pmhost/pmhost.h"

static int failures;
static char written[1 << 20]; /* by the commands */
static size_t num_written;
static char last_error[1000];
static int num_values;
static char mtu[32];

static void check(int is_good, const char* what, int line) {
  if (is_good) return;
  printf("host_calls.c:%d: %s\n  written: %.300s\n  error: %s\n", line, what, written, last_error);
  ++failures;
}
#define CHECK(condition) check(condition, #condition, __LINE__)

static void take_text(void* context, const char* text, size_t size) {
  CHECK(context == &failures);
  if (num_written + size >= sizeof written) abort();
  memcpy(written + num_written, text, size);
  num_written += size;
  written[num_written] = '\0';
}

/* What a callback prints itself goes to the output of the program, however much it is. */
static void print_text(void* context, const char* text, size_t size) {
  CHECK(context == &failures);
  fwrite(text, 1, size, stdout);
  num_written += size;
}

static void take_error(void* context, const char* text) {
  CHECK(context == &failures);
  snprintf(last_error, sizeof last_error, "%s", text);
}

static void take_value(void* context, const pmhost_value_t* value) {
  CHECK(context == &failures);
  ++num_values;
  if (value->key != NULL && strcmp(value->key, "mtu_bytes") == 0) snprintf(mtu, sizeof mtu, "%s", value->text);
}

static void forget(void) {
  num_written = 0;
  written[0] = last_error[0] = mtu[0] = '\0';
  num_values = 0;
}

static int run(pmhost_t* host, const char* line) {
  forget();
  return pmhost_run(host, line);
}

/* Whether what was made is null and the error says `text`; the next one begins empty. */
static int fails_with(const void* made, char** error, const char* text) {
  int is_so = made == NULL && *error != NULL && strstr(*error, text) != NULL;
  if (!is_so) printf("expected '%s', got '%s'\n", text, *error == NULL ? "(null)" : *error);
  free(*error);
  *error = NULL;
  return is_so;
}

static void open_wrongly(void) {
  char* error = NULL;
  CHECK(fails_with(pmhost_open("/nowhere/none.yaml", &error), &error, "/nowhere/none.yaml"));
  CHECK(fails_with(pmhost_open(NULL, &error), &error, "no switch file"));
  CHECK(pmhost_open("/nowhere/none.yaml", NULL) == NULL);
  pmhost_close(NULL);
}

static void run_lines(pmhost_t* host) {
  CHECK(run(host, "show interface ethernet 1/1 description") == PMHOST_DONE);
  CHECK(strstr(written, "Ethernet1/1") != NULL);
  CHECK(run(host, "show interface ethernet 1/1 brief | json") == PMHOST_DONE);
  CHECK(strncmp(written, "{\"schema_version\":", 18) == 0 && num_values > 0);
  CHECK(run(host, "show interface ethernet 63/1") == PMHOST_NO_SUCH_INTERFACE);
  CHECK(run(host, "nonsense") == PMHOST_USAGE && strstr(last_error, "nonsense") != NULL && num_written == 0);
  CHECK(run(host, "watch 1 show interface brief") == PMHOST_USAGE && strstr(last_error, "watch") != NULL);
  CHECK(run(host, "show interface ?") == PMHOST_DONE && strstr(written, "brief") != NULL);
  CHECK(run(host, "") == PMHOST_DONE && run(host, NULL) == PMHOST_DONE && num_written == 0);
  CHECK(run(host, "configure") == PMHOST_DONE);
  CHECK(run(host, "interface ethernet 1/1") == PMHOST_DONE);
  CHECK(run(host, "switchport mtu 1600") == PMHOST_DONE);
  CHECK(run(host, "end") == PMHOST_DONE);
  CHECK(run(host, "show interface ethernet 1/1") == PMHOST_DONE && strcmp(mtu, "1600") == 0);
}

static void print_in_callbacks(pmhost_t* host, const pmhost_output_t* output) {
  pmhost_output_t printing = *output;
  printing.write = print_text;
  pmhost_set_output(host, &printing);
  puts("begin");
  CHECK(run(host, "show interface") == PMHOST_DONE && num_written > 1000);
  CHECK(run(host, "show interface | json") == PMHOST_DONE && num_written > 1000);
  puts("end");
  pmhost_set_output(host, output);
}

/* Every member of the output that errors have: none of them is text of the command. */
static void run_in_json(pmhost_t* host, const pmhost_output_t* output) {
  pmhost_output_t json = *output;
  json.form = PMHOST_JSON;
  pmhost_set_output(host, &json);
  CHECK(run(host, "show interface ethernet 1/1") == PMHOST_DONE && written[0] == '{');
  CHECK(run(host, "configure") == PMHOST_DONE && run(host, "end") == PMHOST_DONE);
  CHECK(run(host, "show nothing | json") == PMHOST_USAGE && strstr(last_error, "nothing") != NULL);
  pmhost_set_output(host, output);
  CHECK(run(host, "show interface ethernet 63/1") == PMHOST_NO_SUCH_INTERFACE);
  CHECK(num_written == 0 && strstr(last_error, "no such interface") != NULL);
}

static void call_handlers(pmhost_t* host, const pmhost_output_t* output) {
  char* error = NULL;
  CHECK(fails_with(pmhost_command(host, DISPLAY_DETAIL, "ethernet 63/1", &error), &error, "63/1"));
  CHECK(fails_with(pmhost_command(host, DISPLAY_DETAIL, "teapot 1", &error), &error, "teapot"));

  pmhost_command_t* command = pmhost_command(host, DISPLAY_DESCRIPTION, "ethernet 1/1-2, mgmt 0", &error);
  CHECK(command != NULL);
  const if_index_t* interfaces = NULL;
  CHECK(pmhost_interfaces(command, &interfaces) == 3 && interfaces[0] != interfaces[1]);
  CHECK(pmhost_interfaces(command, NULL) == 3);
  CHECK(pmhost_block(command)->command_id == DISPLAY_DESCRIPTION);
  CHECK(((const intf_range_t*)pmhost_block(command)->arg_list[0]->arg)->range_count == 2);
  pmhost_end(command);

  command = pmhost_command(host, DISPLAY_DESCRIPTION, "ethernet 1/1-2", &error);
  forget();
  CHECK(pmhost_call(command, pm_pcm_cli_show_header) == PMHOST_DONE && strstr(written, "Description") != NULL);
  CHECK(pmhost_show(command, pm_cli_show_eth_port_config) == PMHOST_DONE && strstr(written, "Ethernet1/2") != NULL);
  pmhost_output_t json = *output;
  json.form = PMHOST_JSON;
  pmhost_set_output(host, &json);
  forget();
  CHECK(pmhost_show(command, pm_cli_show_eth_port_config) == PMHOST_DONE);
  CHECK(strstr(written, "{\"interface\":\"Ethernet1/2\",") != NULL);
  pmhost_end(command);

  /* 8 is no display that the shell has: its lines are messages. */
  command = pmhost_command(host, 8, "ethernet 1/1", &error);
  forget();
  CHECK(pmhost_show(command, pm_cli_show_eth_port_config) == PMHOST_DONE);
  CHECK(strstr(written, "\"display\":\"text\"") != NULL);
  pmhost_end(command);
  pmhost_set_output(host, output);

  /* Its counters come through a library that the command library opens by name. */
  command = pmhost_command(host, DISPLAY_RECEIVED, "ethernet 1/1", &error);
  forget();
  CHECK(pmhost_show(command, pm_cli_show_eth_port_config) == PMHOST_DONE && strstr(written, "unavailable") == NULL &&
        num_values > 0);
  pmhost_end(command);
  pmhost_end(NULL);
}

static void choose_ranges(pmhost_t* host) {
  CHECK(run(host, "configure") == PMHOST_DONE && run(host, "interface ethernet 2/1.100-101") == PMHOST_DONE);
  CHECK(run(host, "end") == PMHOST_DONE);
  pmhost_command_t* command = pmhost_command(host, DISPLAY_DETAIL, "ethernet 1/1-2, ethernet 2/1.100-101", NULL);
  CHECK(command != NULL);
  CHECK(((const intf_range_t*)pmhost_block(command)->arg_list[0]->arg)->range_count == 3);
  pmhost_end(command);
}

static uint32 create_loopbacks(paraminfo_t* block) {
  return pm_cli_config_loopback_interface(block->q, 1, block->arg_list[0]->interface_mask,
                                          (const intf_range_t*)block->arg_list[0]->arg, 60);
}

static uint32 clear_counters(paraminfo_t* block) { return (uint32)pm_cli_eth_clear_counters(block); }

static size_t used_memory(void) {
  const struct mallinfo2 used = mallinfo2();
  return used.uordblks + used.hblkhd;
}

/* What services answer to a handler neither stays in memory nor is taken for the answer to a later line. */
static void forget_answers(pmhost_t* host) {
  pmhost_command_t* command = pmhost_command(host, DISPLAY_DETAIL, "ethernet 1/1", NULL);
  CHECK(pmhost_call(command, create_loopbacks) == PMHOST_DONE); /* refused: a port is no loopback */
  CHECK(run(host, "configure") == PMHOST_DONE);
  CHECK(run(host, "no interface mgmt 0") == PMHOST_NOT_PERMITTED && strstr(last_error, "does not allow") != NULL);
  CHECK(run(host, "end") == PMHOST_DONE);

  pmhost_call(command, clear_counters); /* loads what stays loaded */
  const size_t before = used_memory();
  for (int i = 0; i < 10000; ++i) pmhost_call(command, clear_counters);
  CHECK(used_memory() < before + 10000);
  pmhost_end(command);
}

/* Lines on standard error, for the script that runs this. */
static void print_errors(pmhost_t* host) {
  CHECK(pmhost_run(host, "nonsense") == PMHOST_USAGE);
  CHECK(pmhost_run(host, "show interface ethernet 63/1") == PMHOST_NO_SUCH_INTERFACE);
}

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  open_wrongly();
  char* error = NULL;
  pmhost_t* host = pmhost_open(argv[1], &error);
  if (host == NULL) return printf("%s\n", error), 1;
  CHECK(fails_with(pmhost_open(argv[1], &error), &error, "open already"));
  CHECK(pmhost_queue(host) != 0);
  print_errors(host);
  const pmhost_output_t output = {.write = take_text, .error = take_error, .value = take_value, .context = &failures};
  pmhost_set_output(host, &output);
  run_lines(host);
  run_in_json(host, &output);
  print_in_callbacks(host, &output);
  call_handlers(host, &output);
  choose_ranges(host);
  forget_answers(host);
  pmhost_close(host);

  /* A host is a switch of its own: what was set in the first is not in the second. */
  host = pmhost_open(argv[1], &error);
  if (host == NULL) return printf("%s\n", error), 1;
  pmhost_set_output(host, &output);
  CHECK(run(host, "show interface ethernet 1/1") == PMHOST_DONE && strcmp(mtu, "1600") != 0 && mtu[0] != '\0');
  pmhost_set_output(host, NULL);
  print_errors(host);
  pmhost_close(host);
  if (failures == 0) puts("all calls are good");
  return failures != 0;
}
