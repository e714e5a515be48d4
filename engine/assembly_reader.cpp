#include <sys/wait.h>
#include <unistd.h>

#include <BRepBndLib.hxx>
#include <IFSelect_ReturnStatus.hxx>
#include <Quantity_Color.hxx>
#include <STEPCAFControl_Reader.hxx>
#include <STEPControl_Reader.hxx>
#include <Standard_Failure.hxx>
#include <TColStd_SequenceOfAsciiString.hxx>
#include <TCollection_HAsciiString.hxx>
#include <TDF_Label.hxx>
#include <TDF_LabelSequence.hxx>
#include <TDataStd_Name.hxx>
#include <TDataStd_TreeNode.hxx>
#include <TDocStd_Document.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>
#include <XCAFApp_Application.hxx>
#include <XCAFDoc.hxx>
#include <XCAFDoc_ColorTool.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_MaterialTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>

#include "engine/assembly.h"
#include "engine/assembly_image.h"
#include "framework/case_fold.h"
#include "framework/location_helper.h"
#include "framework/text_convert.h"
#include "util/child_program.h"

namespace {
std::wstring Wide(const TCollection_ExtendedString& text) {
    std::wstring out;
    out.reserve(static_cast<size_t>(text.Length()));
    for (int i = 1; i <= text.Length(); ++i) out += static_cast<wchar_t>(text.Value(i));
    return out;
}

std::wstring LabelName(const TDF_Label& label) {
    Handle(TDataStd_Name) name;
    return label.FindAttribute(TDataStd_Name::GetID(), name) ? Wide(name->Get()) : std::wstring();
}

// The units the kernel converts from; any other name in a file would give unscaled shapes.
bool KnownLengthUnit(const TCollection_AsciiString& name) {
    static const std::array<const char*, 11> known = {
        "millimetre", "metre", "centimetre", "decimetre", "micrometre", "nanometre",
        "kilometre",  "inch",  "foot",       "mile",      "yard"};
    TCollection_AsciiString lower = name;
    lower.LowerCase();
    for (const char* unit : known)
        if (lower.IsEqual(unit)) return true;
    return false;
}

// The kernel names an unnamed instance after its label ("=>[0:1:1:2]"); that is no name.
std::wstring InstanceName(const TDF_Label& label) {
    std::wstring name = LabelName(label);
    return name.starts_with(L"=>[") ? std::wstring() : name;
}

class TreeWalker {
public:
    TreeWalker(const Handle(TDocStd_Document) & doc, Assembly& assembly)
        : m_shapes(XCAFDoc_DocumentTool::ShapeTool(doc->Main())),
          m_colours(XCAFDoc_DocumentTool::ColorTool(doc->Main())),
          m_materials(XCAFDoc_DocumentTool::MaterialTool(doc->Main())),
          m_assembly(assembly) {}

    void WalkRoots() {
        TDF_LabelSequence roots;
        m_shapes->GetFreeShapes(roots);
        std::vector<Node> nodes;
        for (const TDF_Label& root : roots) nodes.push_back({root, root, TopLoc_Location()});
        WalkSiblings(nodes, L"", true);
    }

private:
    struct Node {
        TDF_Label instance;  // the component, or the free shape itself at the top
        TDF_Label product;   // the shape it refers to
        TopLoc_Location placement;
    };

    std::wstring SegmentName(const Node& node) const {
        std::wstring name = LabelName(node.product);
        if (name.empty()) name = LabelName(node.instance);
        return name.empty() ? L"part" : name;
    }

    // Siblings of one name are numbered in file order so that every part has its own path.
    void WalkSiblings(const std::vector<Node>& nodes, const std::wstring& parentPath, bool top) {
        std::map<std::wstring, int> counts, seen;
        for (const Node& node : nodes) ++counts[SegmentName(node)];
        for (const Node& node : nodes) {
            const std::wstring name = SegmentName(node);
            std::wstring segment = name;
            if (counts[name] > 1) segment += L"[" + std::to_wstring(++seen[name]) + L"]";
            const std::wstring path = parentPath.empty() ? segment : parentPath + L"/" + segment;
            if (XCAFDoc_ShapeTool::IsAssembly(node.product)) {
                TDF_LabelSequence components;
                XCAFDoc_ShapeTool::GetComponents(node.product, components);
                std::vector<Node> children;
                for (const TDF_Label& component : components) {
                    TDF_Label referred;
                    if (!XCAFDoc_ShapeTool::GetReferredShape(component, referred)) continue;
                    children.push_back(
                        {component, referred,
                         node.placement * XCAFDoc_ShapeTool::GetLocation(component)});
                }
                // A top-level assembly is the assembly itself, not a subassembly of it.
                m_subassembly.push_back(top ? std::wstring() : path);
                WalkSiblings(children, path, false);
                m_subassembly.pop_back();
            } else {
                AddSolids(node, path, name, top);
            }
        }
    }

    void AddSolids(const Node& node, const std::wstring& path, const std::wstring& product,
                   bool top) {
        const TopoDS_Shape shape = XCAFDoc_ShapeTool::GetShape(node.product).Moved(node.placement);
        std::vector<TopoDS_Shape> solids;
        for (TopExp_Explorer it(shape, TopAbs_SOLID); it.More(); it.Next())
            solids.push_back(it.Current());
        for (size_t i = 0; i < solids.size(); ++i) {
            AssemblyPart part;
            part.path =
                solids.size() == 1 ? path : path + L"/solid[" + std::to_wstring(i + 1) + L"]";
            part.product = product;
            part.instance = top ? std::wstring() : InstanceName(node.instance);
            part.subassembly = m_subassembly.empty() ? std::wstring() : m_subassembly.back();
            part.material = Material(node);
            part.colour = Colour(node);
            part.shape = solids[i];
            BRepBndLib::Add(part.shape, part.box);
            m_assembly.parts.push_back(std::move(part));
        }
    }

    // A shape's material hangs from a tree node that points at the material's own label.
    std::wstring Material(const Node& node) const {
        for (const TDF_Label& label : {node.instance, node.product}) {
            Handle(TDataStd_TreeNode) reference;
            if (!label.FindAttribute(XCAFDoc::MaterialRefGUID(), reference) ||
                !reference->HasFather())
                continue;
            Handle(TCollection_HAsciiString) name, description, densityName, densityType;
            Standard_Real density = 0;
            if (m_materials->GetMaterial(reference->Father()->Label(), name, description, density,
                                         densityName, densityType) &&
                !name.IsNull())
                return FromUtf8(name->ToCString());
        }
        return {};
    }

    std::wstring Colour(const Node& node) const {
        Quantity_Color colour;
        for (const TDF_Label& label : {node.instance, node.product})
            for (XCAFDoc_ColorType type : {XCAFDoc_ColorSurf, XCAFDoc_ColorGen})
                if (m_colours->GetColor(label, type, colour)) {
                    double r, g, b;
                    colour.Values(r, g, b, Quantity_TOC_sRGB);
                    wchar_t text[8];
                    std::swprintf(text, 8, L"#%02x%02x%02x", int(r * 255 + 0.5), int(g * 255 + 0.5),
                                  int(b * 255 + 0.5));
                    return text;
                }
        return {};
    }

    Handle(XCAFDoc_ShapeTool) m_shapes;
    Handle(XCAFDoc_ColorTool) m_colours;
    Handle(XCAFDoc_MaterialTool) m_materials;
    Assembly& m_assembly;
    std::vector<std::wstring> m_subassembly;
};

bool CheckUnits(STEPCAFControl_Reader& reader, std::string& error) {
    TColStd_SequenceOfAsciiString lengths, angles, solidAngles;
    reader.ChangeReader().FileUnits(lengths, angles, solidAngles);
    // A unit entity the kernel cannot read leaves the file without a length unit, and its shapes
    // would silently be taken as millimetres.
    if (lengths.IsEmpty()) {
        error = "the file names no length unit the kernel knows";
        return false;
    }
    for (const TCollection_AsciiString& unit : lengths)
        if (!KnownLengthUnit(unit)) {
            error =
                std::string("length unit '") + unit.ToCString() + "' is not one the kernel knows";
            return false;
        }
    return true;
}
}  // namespace

namespace {
// What the reader program may spend on one file: the shared assembly reads in about a second.
constexpr ChildLimits kReaderLimits{kStepReaderAddressSpace, 60};

std::string ReaderProgramPath() {
    if (const char* path = std::getenv(kStepReaderEnvironment); path && *path) return path;
    return ToUtf8(CLocationHelper::GetLibraryFolder()) + "/" + kStepReaderProgram;
}

// The kernel's STEP reader can be brought down by a damaged file, so the reader program reads it
// first, under limits; only a file it read to the end is read here. Its standard output carries
// the reason when it refused the file.
bool ReaderProgramReadsWhole(const std::string& path, const std::string& image,
                             std::string& error) {
    const std::string program = ReaderProgramPath();
    std::vector<std::string> arguments{program, path};
    if (!image.empty()) arguments.push_back(image);
    int answer = -1;
    const pid_t child = access(program.c_str(), X_OK) == 0
                            ? StartChildProgram(arguments, kReaderLimits, answer)
                            : -1;
    if (child < 0) {
        error = path + ": the STEP reader program " + program + " cannot be started";
        return false;
    }
    std::string said;
    char buffer[4096];
    for (ssize_t n; (n = read(answer, buffer, sizeof buffer)) != 0;) {
        if (n < 0 && errno == EINTR) continue;
        if (n < 0) break;
        if (said.size() < 4096) said.append(buffer, static_cast<size_t>(n));
    }
    close(answer);
    const int status = WaitForChildProgram(child);
    if (status >= 0 && WIFEXITED(status) && WEXITSTATUS(status) == 0) return true;
    if (status >= 0 && WIFEXITED(status) && WEXITSTATUS(status) == kStepReaderRefused &&
        !said.empty()) {
        error = said;
        return false;
    }
    if (status >= 0 && WIFSIGNALED(status) && WTERMSIG(status) == SIGXCPU)
        error = path + ": the STEP reader took too long on this file";
    else if (status >= 0 && WIFEXITED(status) && WEXITSTATUS(status) == 127)
        error = path + ": the STEP reader program " + program + " cannot be started";
    else
        error = path + ": damaged STEP file (the STEP reader stopped on it)";
    return false;
}
}  // namespace

namespace {
// A file of the temporary folder for the reader program's image, removed with this; no path when
// none could be made.
struct ImageFile {
    std::string path;
    ImageFile() {
        std::error_code ec;
        std::string pattern =
            (std::filesystem::temp_directory_path(ec) / "vantor-assembly-XXXXXX").string();
        const int fd = ec ? -1 : mkstemp(pattern.data());
        if (fd < 0) return;
        close(fd);
        path = pattern;
    }
    ~ImageFile() {
        if (!path.empty()) unlink(path.c_str());
    }
    ImageFile(const ImageFile&) = delete;
    ImageFile& operator=(const ImageFile&) = delete;
};
}  // namespace

bool ReadStepAssembly(const std::string& path, Assembly& assembly, std::string& error) {
    std::error_code ec;
    if (!std::filesystem::is_regular_file(path, ec)) {
        error = path + ": no such file";
        return false;
    }
    // The reader program hands over what it read, so the file is read once.
    const ImageFile image;
    if (!ReaderProgramReadsWhole(path, image.path, error)) return false;
    if (!image.path.empty() && ReadAssemblyImage(image.path, assembly)) {
        assembly.file = FromUtf8(path);
        return true;
    }
    // No image to take over (no room for it in the temporary folder, say): read the file here,
    // which the reader program has read whole.
    return ReadStepAssemblyHere(path, assembly, error);
}

bool ReadStepAssemblyHere(const std::string& path, Assembly& assembly, std::string& error) {
    std::error_code ec;
    if (!std::filesystem::is_regular_file(path, ec)) {
        error = path + ": no such file";
        return false;
    }
    assembly.file = FromUtf8(path);
    assembly.parts.clear();
    try {
        Handle(XCAFApp_Application) app = XCAFApp_Application::GetApplication();
        Handle(TDocStd_Document) doc;
        app->NewDocument("MDTV-XCAF", doc);
        STEPCAFControl_Reader reader;
        reader.SetNameMode(true);
        reader.SetColorMode(true);
        reader.SetMatMode(true);
        reader.SetLayerMode(false);
        reader.SetPropsMode(true);
        if (reader.ReadFile(path.c_str()) != IFSelect_RetDone) {
            error = path + ": not a readable STEP file";
            app->Close(doc);
            return false;
        }
        if (!CheckUnits(reader, error)) {
            error = path + ": " + error;
            app->Close(doc);
            return false;
        }
        const bool transferred = reader.Transfer(doc);
        if (transferred) TreeWalker(doc, assembly).WalkRoots();
        app->Close(doc);
        if (!transferred) {
            error = path + ": the STEP file holds nothing the kernel can build";
            return false;
        }
    } catch (const Standard_Failure& failure) {
        error = path + ": damaged STEP file (" + failure.GetMessageString() + ")";
        return false;
    }
    if (assembly.parts.empty()) {
        error = path + ": the assembly holds no solid";
        return false;
    }
    return true;
}

namespace {
std::wstring WithoutExtension(const std::wstring& name) {
    static const std::array<const wchar_t*, 4> extensions = {L".prt", L".asm", L".stp", L".step"};
    const std::wstring folded = ZebFoldCase(name);
    for (const wchar_t* extension : extensions) {
        const std::wstring_view ext(extension);
        if (folded.size() > ext.size() && folded.ends_with(ext))
            return folded.substr(0, folded.size() - ext.size());
    }
    return folded;
}
}  // namespace

bool PartMatches(const AssemblyPart& part, const std::wstring& component) {
    const std::wstring wanted = WithoutExtension(component);
    if (wanted.empty()) return false;
    return WithoutExtension(part.product) == wanted ||
           (!part.instance.empty() && WithoutExtension(part.instance) == wanted);
}
