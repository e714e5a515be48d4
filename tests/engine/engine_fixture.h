#pragma once

// The engine's tests: settings made from the module's rules and an assembly checked the way the
// host checks it.
#include <gtest/gtest.h>

#include <BRepPrimAPI_MakeBox.hxx>
#include <algorithm>
#include <fstream>
#include <memory>

#include "database/service/data_helper.h"
#include "engine/assembly.h"
#include "engine/step_writer.h"
#include "framework/text_convert.h"
#include "framework/zeb_rule.h"
#include "framework/zeb_xml.h"
#include "host/assembly_check.h"
#include "host/settings_file.h"
#include "tests/engine/shared_assembly.h"
#include "tests/support/scoped_env.h"
#include "tests/support/scoped_temp_dir.h"
#include "util/string_table.h"

inline constexpr const char* kLibDir = VANTOR_BUILD_DIR "/lib/vantor";

inline TopoDS_Shape Box(double x, double y, double z, double dx = 10, double dy = 10,
                        double dz = 10) {
    return BRepPrimAPI_MakeBox(gp_Pnt(x, y, z), dx, dy, dz).Shape();
}

// The engine's rules: a settings document holding the rules built by the test, each taken from
// the module at its defaults, changed, and exported.
class EngineTest : public ::testing::Test {
protected:
    void SetUp() override {
        std::string error;
        ASSERT_TRUE(module.Load(kLibDir, error)) << error;
        ASSERT_TRUE(engine.Load(kLibDir, error)) << error;
    }
    void TearDown() override { module.SetXMLDoc(nullptr); }

    // A rule of the module at its defaults: the one that has parameter `id`.
    CZebRule* Rule(long id) {
        ZebArray<CZebRule*> all;
        module.GetAllRules(&all);
        CZebRule* found = nullptr;
        for (CZebRule* rule : all) {
            if (!found && rule->FindParameterInArray(id))
                found = rule;
            else
                module.DeleteRule(&rule);
        }
        rules.push_back(found);
        return found;
    }
    template <class T>
    ZebTypedParam<T>& Param(CZebRule* rule, long id) {
        return *rule->FindParameterInArray(id)->As<T>();
    }
    template <class T>
    void Set(CZebRule* rule, long id, std::initializer_list<T> values) {
        ZebTypedParam<T>& p = Param<T>(rule, id);
        p.values.RemoveAll();
        for (const T& v : values) p.values.Add(v);
    }
    void SetRows(CZebRule* rule, long id, std::initializer_list<ZebRow> rows) {
        Set<ZebRow>(rule, id, rows);
    }

    // Checks `assembly` against the rules made so far, written under a parent in `unit`.
    ZebCheckReport Check(const std::string& assembly, int unit = 0, unsigned threads = 0) {
        ZebCheckReport report;
        std::string error;
        EXPECT_EQ(Run(assembly, {}, report, error, unit, threads), ZebCheckDone) << error;
        return report;
    }
    int Run(const std::string& assembly, std::vector<std::wstring> only, ZebCheckReport& report,
            std::string& error, int unit = 0, unsigned threads = 0) {
        ZebXMLDocument doc;
        module.SetXMLDoc(&doc);
        std::unique_ptr<ZebXMLNode> parent(StartSettingsDocument(doc, unit));
        for (CZebRule* rule : rules) {
            std::unique_ptr<ZebXMLNode> exported(rule->ExportToXML());
            parent->AppendNode(exported.get());
        }
        ZebCheckRequest request;
        request.assemblyPath = assembly;
        request.threads = threads;
        request.onlyRules = std::move(only);
        return RunAssemblyCheck(engine, module, doc, request, report, error);
    }
    void ClearRules() {
        for (CZebRule*& rule : rules) module.DeleteRule(&rule);
        rules.clear();
    }
    ~EngineTest() override { ClearRules(); }

    std::string Write(const std::vector<SolidToWrite>& solids, const char* unit = "MM",
                      const char* name = "a.stp") {
        const std::string path = (dir.Path() / name).string();
        std::string error;
        EXPECT_TRUE(WriteStepAssembly(path, L"top", solids, unit, error)) << error;
        return path;
    }

    ScopedTempDir dir{"engine_test"};
    ScopedEnv database{"VANTOR_DATABASE_DIR", dir.Path().c_str()};
    ScopedEnv resources{"VANTOR_RES_DIR", VANTOR_BUILD_DIR "/share/vantor/res"};
    ScopedEnv language{"LANG", "en_US.UTF-8"};
    ModuleLoader module;
    EngineLoader engine;
    std::vector<CZebRule*> rules;
};

// The parts of each finding by their last names, "a-b" in name order; sorted, since the order of
// parts in a file written by the kernel is the kernel's.
inline std::vector<std::string> Pairs(const ZebCheckReport& report) {
    std::vector<std::string> pairs;
    for (const ZebFinding& f : report.findings) {
        std::string text;
        std::vector<std::string> names;
        for (const std::wstring& part : f.parts)
            names.push_back(ToUtf8(part.substr(part.rfind(L'/') + 1)));
        std::sort(names.begin(), names.end());
        for (const std::string& name : names) text += (text.empty() ? "" : "-") + name;
        pairs.push_back(text);
    }
    std::sort(pairs.begin(), pairs.end());
    return pairs;
}
using Names = std::vector<std::string>;

inline SolidToWrite Solid(const wchar_t* name, const TopoDS_Shape& shape) {
    return {name, shape, L"", L""};
}

// True when a finding's message holds `text`.
inline bool Mentions(const ZebCheckReport& report, const std::wstring& text) {
    for (const ZebFinding& f : report.findings)
        if (f.message.find(text) != std::wstring::npos) return true;
    return false;
}
