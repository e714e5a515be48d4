#pragma once

// Symbols of libVantorFrameWorkUi.so that the module, the controls and the host link against.
#define VANTOR_FWUI_API __attribute__((visibility("default")))
