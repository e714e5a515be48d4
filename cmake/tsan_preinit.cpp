// Linked into every program of the thread checking build. With the shared checker runtime,
// libraries' constructors (libgpg-error's, through Qt) allocate before the runtime has started
// and crash it; as the static runtime does, this starts it before any constructor runs.
extern "C" void __tsan_init();
__attribute__((section(".preinit_array"),
               used)) static void (*const vantor_tsan_preinit)() = __tsan_init;
