// Linked into every test program of a checking build: the leak checker reads the suppressions of
// third-party leaks from the tree, however the program is started.
extern "C" __attribute__((visibility("default"), used)) const char* __lsan_default_options() {
    return "suppressions=" VANTOR_LSAN_SUPPRESSIONS ":print_suppressions=0";
}
