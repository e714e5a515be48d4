// vantor-step-reader PATH [IMAGE]: reads the STEP assembly PATH with the kernel as the engine does
// and tells the engine how it went: exit 0 when it was read whole, kStepReaderRefused with the
// reason on standard output when it was refused. With IMAGE it writes what it read there for the
// engine to take over (an image that could not be written is left for the engine to notice).
// Run by the engine under resource limits, never by hand: a file the kernel's reader stops on
// ends this process, not the engine's.
#include <Message.hxx>
#include <Message_Messenger.hxx>
#include <Message_PrinterOStream.hxx>
#include <cstdio>
#include <new>

#include "engine/assembly.h"
#include "engine/assembly_image.h"

int main(int argc, char** argv) {
    if (argc != 2 && argc != 3) return 2;
    // Standard output carries the reason of a refusal alone, not the kernel's own remarks.
    Message::DefaultMessenger()->RemovePrinters(STANDARD_TYPE(Message_PrinterOStream));
    try {
        Assembly assembly;
        std::string error;
        if (ReadStepAssemblyHere(argv[1], assembly, error)) {
            if (argc == 3) WriteAssemblyImage(assembly, argv[2]);
            return 0;
        }
        std::fwrite(error.data(), 1, error.size(), stdout);
        return kStepReaderRefused;
    } catch (const std::bad_alloc&) {
        return 3;
    }
}
