#include "engine/step_writer.h"

#include <Interface_Static.hxx>
#include <Message.hxx>
#include <Message_Messenger.hxx>
#include <Message_Printer.hxx>
#include <STEPCAFControl_Writer.hxx>
#include <TCollection_HAsciiString.hxx>
#include <TDataStd_Name.hxx>
#include <TDocStd_Document.hxx>
#include <XCAFApp_Application.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_MaterialTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <map>

#include "framework/text_convert.h"

namespace {
void Name(const TDF_Label& label, const std::wstring& name) {
    TDataStd_Name::Set(label, TCollection_ExtendedString(ToUtf8(name).c_str(), true));
}
}  // namespace

bool WriteStepAssembly(const std::string& path, const std::wstring& top,
                       const std::vector<SolidToWrite>& solids, const char* unit,
                       std::string& error) {
    Handle(XCAFApp_Application) app = XCAFApp_Application::GetApplication();
    Handle(TDocStd_Document) doc;
    app->NewDocument("MDTV-XCAF", doc);
    Handle(XCAFDoc_ShapeTool) shapes = XCAFDoc_DocumentTool::ShapeTool(doc->Main());
    Handle(XCAFDoc_MaterialTool) materials = XCAFDoc_DocumentTool::MaterialTool(doc->Main());
    const TDF_Label root = shapes->NewShape();
    Name(root, top);
    std::map<std::wstring, TDF_Label> subassemblies;
    for (const SolidToWrite& solid : solids) {
        TDF_Label parent = root;
        if (!solid.subassembly.empty()) {
            auto [it, added] = subassemblies.try_emplace(solid.subassembly);
            if (added) {
                it->second = shapes->NewShape();
                Name(it->second, solid.subassembly);
            }
            parent = it->second;
        }
        const TDF_Label part = shapes->AddShape(solid.shape, false);
        Name(part, solid.name);
        if (!solid.material.empty()) {
            Handle(TCollection_HAsciiString) name =
                new TCollection_HAsciiString(ToUtf8(solid.material).c_str());
            materials->SetMaterial(part, name, new TCollection_HAsciiString(""), 7.8,
                                   new TCollection_HAsciiString("density"),
                                   new TCollection_HAsciiString("POSITIVE_RATIO_MEASURE"));
        }
        shapes->AddComponent(parent, part, TopLoc_Location());
    }
    for (const auto& [name, label] : subassemblies)
        shapes->AddComponent(root, label, TopLoc_Location());
    shapes->UpdateAssemblies();

    // The writer's statistics are no news to a test or a benchmark.
    for (const Handle(Message_Printer) & printer : Message::DefaultMessenger()->Printers())
        printer->SetTraceLevel(Message_Fail);
    Interface_Static::SetCVal("write.step.unit", unit);
    STEPCAFControl_Writer writer;
    writer.SetNameMode(true);
    writer.SetMaterialMode(true);
    const bool written =
        writer.Transfer(doc, STEPControl_AsIs) && writer.Write(path.c_str()) == IFSelect_RetDone;
    app->Close(doc);
    if (!written) error = path + ": the kernel could not write the assembly";
    return written;
}
