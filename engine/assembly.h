#pragma once

#include <Bnd_Box.hxx>
#include <TopoDS_Shape.hxx>
#include <cstdint>
#include <string>
#include <vector>

// One solid of an assembly: what the rules compare.
struct AssemblyPart {
    // Product names from the top down, siblings of one name numbered from 1:
    // "as1/l-bracket-assembly/nut-bolt-assembly[2]/bolt".
    std::wstring path;
    std::wstring product;
    // The name of the instance in its parent; often empty or generated.
    std::wstring instance;
    // Path of the subassembly that holds the part; empty for a part of the top-level assembly.
    std::wstring subassembly;
    std::wstring material;  // empty when the file gives none
    std::wstring colour;    // "#rrggbb", empty when the file gives none
    TopoDS_Shape shape;     // placed, in kernel millimetres
    Bnd_Box box;
};

struct Assembly {
    std::wstring file;
    std::vector<AssemblyPart> parts;
};

// Reads a STEP assembly (AP203, AP214, AP242) with names, placements, colours and materials. The
// shapes stay in the kernel's millimetres whatever unit the file uses. False with `error` set when
// the file cannot be read, is no STEP file, uses a length unit the kernel does not know, or holds
// no solid.
// The file is read by the reader program (kStepReaderProgram, beside the engine), so that a file
// the kernel's reader stops on ends that program, not the caller; it hands what it read over as an
// image (assembly_image.h), and the file is read here only when no image came back.
bool ReadStepAssembly(const std::string& path, Assembly& assembly, std::string& error);
// The same read in this process, without the reader program: what that program runs.
bool ReadStepAssemblyHere(const std::string& path, Assembly& assembly, std::string& error);

constexpr const char* kStepReaderProgram = "vantor-step-reader";
// Overrides where the reader program is looked for.
constexpr const char* kStepReaderEnvironment = "VANTOR_STEP_READER";
// The reader program's exit status when it refused the file; the reason is on its standard output.
// Not 1, which a sanitizer or the C++ run time also ends a process with.
constexpr int kStepReaderRefused = 10;
// Address space of the reader program: the kernel's model of a large assembly takes a few hundred
// megabytes. The address and thread sanitizers map terabytes of shadow memory at start, so a
// checking build leaves it open (0).
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define VANTOR_STEP_READER_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define VANTOR_STEP_READER_SANITIZED 1
#endif
#endif
#ifdef VANTOR_STEP_READER_SANITIZED
constexpr uint64_t kStepReaderAddressSpace = 0;
#else
constexpr uint64_t kStepReaderAddressSpace = uint64_t(8) << 30;
#endif

// True when a part's product or instance name is `component`, without regard to letter case and
// with or without a file extension (".prt", ".asm", ".stp", ".step") on either side.
bool PartMatches(const AssemblyPart& part, const std::wstring& component);
