// The shell over a recorded machine: linked with the shell's own main(), whose --kernel finds this kernel.
#include "host/source/kernel/recorded_switch.h"

namespace host {
namespace {

struct recorded_machine {
  recorded_machine() { record_switch(kernel); }
  recorded_kernel kernel;
};
const recorded_machine the_recorded_machine;

}  // namespace
}  // namespace host
