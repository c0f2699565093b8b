#include "source/open/switch_options.h"

#include <CLI/CLI.hpp>

#include "source/chassis/giant.h"

namespace host {

void add_switch_options(CLI::App& app, switch_options& requested) {
  CLI::Option* const file =
      app.add_option("--switch", requested.switch_file, "Switch file (default: the demonstration switch)");
  file->type_name("FILE");
  CLI::Option* const defaults =
      app.add_flag("--hardware-defaults", requested.has_defaults, "Ignore the settings of the switch file");
  CLI::Option* const giant = app.add_option("--giant", requested.giant_ports, "Generate a switch of N Ethernet ports");
  giant->type_name("N")->check(CLI::Range(1U, uint32{kMaxGiantPorts}))->excludes(file);
  CLI::Option* const kernel = app.add_flag("--kernel", requested.is_kernel, "Use the network devices of this machine")
                                  ->excludes(file)
                                  ->excludes(giant)
                                  ->excludes(defaults);
  app.add_option("--replay", requested.replay_directory, "Use the switch of a directory that --capture stored")
      ->type_name("DIR")
      ->excludes(file)
      ->excludes(giant)
      ->excludes(defaults)
      ->excludes(kernel);
  app.add_option("--map", requested.map_file, "File that maps devices to interfaces")->type_name("FILE")->needs(kernel);
  app.add_flag("--session-counters", requested.has_session_counters, "Clear counters for this session only")
      ->needs(kernel);
  app.add_option("--clock", requested.clock, "Stop the clock at this moment, in seconds since 1970")
      ->type_name("SECONDS");
}

}  // namespace host
