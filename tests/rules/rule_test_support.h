#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "app/settings_document.h"
#include "framework/ui_message.h"
#include "framework/zeb_rule.h"
#include "framework/zeb_xml.h"
#include "tests/support/module_environment.h"

// Records every message instead of showing it.
class RecordingMessages : public IZebMessageSink {
public:
    int ShowMessage(const std::wstring&, const std::wstring& text, ZebMsgIcon,
                    ZebMsgButtons) override {
        texts.push_back(text);
        return ZebIdOk;
    }
    std::vector<std::wstring> texts;
};

// The started module with a settings document handed over as SetXMLDoc does.
class RuleTest : public ModuleTest {
protected:
    void SetUp() override {
        SetSettingsDocument(&settings);
        previousSink = SetZebMessageSink(&messages);
    }
    void TearDown() override {
        SetZebMessageSink(previousSink);
        SetSettingsDocument(nullptr);
    }

    // Places `rule` under an "AssemblyRules" element of a fresh document with the given
    // attributes (an empty text leaves the attribute out) and returns the placed element.
    std::unique_ptr<ZebXMLNode> Place(ZebXMLNode* rule, const std::wstring& version,
                                      const std::wstring& unit) {
        auto doc = std::make_unique<ZebXMLDocument>();
        std::unique_ptr<ZebXMLNode> parent(doc->CreateDocumentElement(L"AssemblyRules"));
        if (!version.empty()) parent->AddAttribute(L"Version", version);
        if (!unit.empty()) parent->AddAttribute(L"Unit", unit);
        parent->AppendNode(rule);
        std::unique_ptr<ZebXMLNodeList> rules(parent->GetNodeList(L"Rule"));
        docs.push_back(std::move(doc));
        return std::unique_ptr<ZebXMLNode>((*rules)[rules->GetSize() - 1]);
    }

    // Exports `rule` and places the element under a current-version parent in `unit`.
    std::unique_ptr<ZebXMLNode> Stored(CZebRule& rule, const std::wstring& unit = L"0",
                                       const std::wstring& version = L"v3.5") {
        std::unique_ptr<ZebXMLNode> exported(rule.ExportToXML());
        EXPECT_NE(exported, nullptr);
        return Place(exported.get(), version, unit);
    }

    // A "Rule" element parsed from text, placed under a parent with the given attributes.
    std::unique_ptr<ZebXMLNode> Parsed(const std::string& ruleXml,
                                       const std::wstring& version = L"v3.5",
                                       const std::wstring& unit = L"0") {
        auto doc = std::make_unique<ZebXMLDocument>();
        std::string parentAttrs;
        if (!version.empty())
            parentAttrs += " Version=\"" + std::string(version.begin(), version.end()) + "\"";
        if (!unit.empty()) parentAttrs += " Unit=\"" + std::string(unit.begin(), unit.end()) + "\"";
        std::wstring error;
        EXPECT_TRUE(doc->LoadXML(
            "<AssemblyRules" + parentAttrs + ">" + ruleXml + "</AssemblyRules>", error))
            << std::string(error.begin(), error.end());
        std::unique_ptr<ZebXMLNodeList> rules(doc->GetElementsByTagName(L"Rule"));
        docs.push_back(std::move(doc));
        return std::unique_ptr<ZebXMLNode>((*rules)[0]);
    }

    ZebXMLDocument settings;
    RecordingMessages messages;
    IZebMessageSink* previousSink = nullptr;
    std::vector<std::unique_ptr<ZebXMLDocument>> docs;
};

template <class T>
ZebTypedParam<T>& Param(CZebRule& rule, long id) {
    CZebParamStorage* p = rule.FindParameterInArray(id);
    if (!p || !p->As<T>())
        throw std::runtime_error("parameter " + std::to_string(id) + " missing or of another type");
    return *p->As<T>();
}

template <class T>
std::vector<T> Values(CZebRule& rule, long id) {
    const auto& p = Param<T>(rule, id);
    return std::vector<T>(p.values.begin(), p.values.end());
}

// Parameter ids in list order.
inline std::vector<long> ParamIds(CZebRule& rule) {
    std::vector<long> ids;
    for (CZebParamStorage* p : rule.ParamArray) ids.push_back(p->GetParam()->id);
    return ids;
}

// An attribute's value, "<absent>" when the element has no such attribute.
inline std::wstring Attr(ZebXMLNode& node, const std::wstring& name) {
    std::wstring value = L"<absent>";
    node.GetAttributeValue(name, value);
    return value;
}

// Unit settings of the rules' conversions: millimetres, centimetres and inches.
inline const UnitSetting kMm{0, 0};
inline const UnitSetting kCm{1, 0};
inline const UnitSetting kInch{3, 0};
