#pragma once

#include <Bnd_Box.hxx>
#include <TopoDS_Shape.hxx>

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
bool ReadStepAssembly(const std::string& path, Assembly& assembly, std::string& error);

// True when a part's product or instance name is `component`, without regard to letter case and
// with or without a file extension (".prt", ".asm", ".stp", ".step") on either side.
bool PartMatches(const AssemblyPart& part, const std::wstring& component);
