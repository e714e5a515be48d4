#pragma once

#include <string>

#include "engine/assembly.h"

// The reader program hands the assembly it read to the engine as an image in a file: the parts'
// names in order and their placed shapes in the kernel's binary form, which reads back in a
// fraction of the time the STEP file takes. Shapes shared by instances stay shared.

// False when the image could not be written whole.
bool WriteAssemblyImage(const Assembly& assembly, const std::string& path);
// False when `path` holds no whole image; `assembly` then keeps what it held. The file name is the
// caller's to set.
bool ReadAssemblyImage(const std::string& path, Assembly& assembly);
