// PLACEHOLDER: replaced by the real implementation.
#include "driver/program.h"
namespace sciray {
int run_program(int, char**) { return 0; }
}
