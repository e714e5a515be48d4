#include "engine/assembly_image.h"

#include <BRepBndLib.hxx>
#include <BRep_Builder.hxx>
#include <BinTools.hxx>
#include <Standard_Failure.hxx>
#include <TopoDS_Compound.hxx>
#include <TopoDS_Iterator.hxx>
#include <array>
#include <cstdint>
#include <cstring>
#include <fstream>

#include "framework/text_convert.h"

namespace {
constexpr char kImageMagic[] = "vantor assembly image 1\n";
// Far beyond any name a STEP file gives: a longer one means the image is not whole.
constexpr uint64_t kLongestText = uint64_t(1) << 20;

std::array<std::wstring AssemblyPart::*, 6> TextsOfAPart() {
    return {&AssemblyPart::path,        &AssemblyPart::product,  &AssemblyPart::instance,
            &AssemblyPart::subassembly, &AssemblyPart::material, &AssemblyPart::colour};
}

void PutCount(std::ostream& out, uint64_t count) {
    out.write(reinterpret_cast<const char*>(&count), sizeof count);
}

bool GetCount(std::istream& in, uint64_t& count) {
    return static_cast<bool>(in.read(reinterpret_cast<char*>(&count), sizeof count));
}

void PutText(std::ostream& out, const std::wstring& text) {
    const std::string utf8 = ToUtf8(text);
    PutCount(out, utf8.size());
    out.write(utf8.data(), static_cast<std::streamsize>(utf8.size()));
}

bool GetText(std::istream& in, std::wstring& text) {
    uint64_t size = 0;
    if (!GetCount(in, size) || size > kLongestText) return false;
    std::string utf8(size, '\0');
    if (!in.read(utf8.data(), static_cast<std::streamsize>(size))) return false;
    text = FromUtf8(utf8);
    return true;
}
}  // namespace

bool WriteAssemblyImage(const Assembly& assembly, const std::string& path) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(kImageMagic, sizeof kImageMagic - 1);
    PutCount(out, assembly.parts.size());
    BRep_Builder builder;
    TopoDS_Compound shapes;
    builder.MakeCompound(shapes);
    for (const AssemblyPart& part : assembly.parts) {
        for (std::wstring AssemblyPart::*text : TextsOfAPart()) PutText(out, part.*text);
        builder.Add(shapes, part.shape);
    }
    try {
        BinTools::Write(shapes, out, false, false, BinTools_FormatVersion_CURRENT);
    } catch (const Standard_Failure&) {
        return false;
    }
    out.flush();
    return static_cast<bool>(out);
}

bool ReadAssemblyImage(const std::string& path, Assembly& assembly) {
    std::ifstream in(path, std::ios::binary);
    char magic[sizeof kImageMagic - 1];
    if (!in.read(magic, sizeof magic) || std::memcmp(magic, kImageMagic, sizeof magic) != 0)
        return false;
    uint64_t count = 0;
    // Each part takes at least its six text sizes, so a larger count is no whole image.
    if (!GetCount(in, count) || count > kLongestText) return false;
    std::vector<AssemblyPart> parts(count);
    for (AssemblyPart& part : parts)
        for (std::wstring AssemblyPart::*text : TextsOfAPart())
            if (!GetText(in, part.*text)) return false;
    try {
        TopoDS_Shape shapes;
        BinTools::Read(shapes, in);
        size_t i = 0;
        for (TopoDS_Iterator it(shapes); it.More(); it.Next(), ++i) {
            if (i == parts.size()) return false;
            parts[i].shape = it.Value();
            BRepBndLib::Add(parts[i].shape, parts[i].box);
        }
        if (i != parts.size()) return false;
    } catch (const Standard_Failure&) {
        return false;
    }
    assembly.parts = std::move(parts);
    return true;
}
