#pragma once

// Symbols of libVantorFrameWork.so that the module and the host link against.
#define VANTOR_FW_API __attribute__((visibility("default")))
