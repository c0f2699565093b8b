#include "pmcli/transceiver.h"

// Prints nothing yet, and no diagnostics follow: the display comes with the optics displays.
syserr_t print_port_fcot_info(mts_q_handle_t, pm_port_info_t*, boolean) { return -1; }
