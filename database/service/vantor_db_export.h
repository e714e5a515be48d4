#pragma once

// Symbols of libVantorDatabase.so that the module, the host and the sibling libraries link against.
#define VANTOR_DB_API __attribute__((visibility("default")))
