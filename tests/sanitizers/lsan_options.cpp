// Linked into every test program of a checking build: the leak checker reads the suppressions of
// third-party leaks from the tree, however the program is started.
extern "C" __attribute__((visibility("default"), used)) const char* __lsan_default_options() {
    return "suppressions=" VANTOR_LSAN_SUPPRESSIONS ":print_suppressions=0";
}

// The runtime of clang 14 takes some dynamic thread-local blocks for those of glibc before 2.25
// and reads the two words before them as an address and a length; when the leak checker then
// walks that range at exit it dies ("Tracer caught signal 11"), now and then, after the tests
// passed. Not following that call costs the checker only pointers kept in such blocks alone.
extern "C" __attribute__((visibility("default"), used)) const char* __asan_default_options() {
    return "intercept_tls_get_addr=0";
}
