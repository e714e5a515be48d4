// Code linked only to the framework's core that includes a control: the layer check must refuse.
#include "controls/zeb_button.h"

int LayerProbeUpward() { return 1; }
