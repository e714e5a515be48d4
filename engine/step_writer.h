#pragma once

#include <TopoDS_Shape.hxx>
#include <string>
#include <vector>

// One solid of an assembly to write: its product name, the subassembly (under the top) that holds
// it, and its material.
struct SolidToWrite {
    std::wstring name;
    TopoDS_Shape shape;        // placed, in millimetres
    std::wstring subassembly;  // empty: directly under the top assembly
    std::wstring material;
};

// Writes the solids as a STEP assembly named `top` in the length unit `unit` ("MM", "CM", "M",
// "INCH", ...), with product names, subassemblies and materials, as the engine reads them back.
// Used for assemblies with known answers. False with `error` set when nothing could be written.
bool WriteStepAssembly(const std::string& path, const std::wstring& top,
                       const std::vector<SolidToWrite>& solids, const char* unit,
                       std::string& error);
