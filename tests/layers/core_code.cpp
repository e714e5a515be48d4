// A file of the framework's core that includes only what the core may: compiled in one batch
// with upward_include.cpp, whose include must still fail.
#include "framework/zeb_rule.h"

int LayerProbeCore() { return 0; }
