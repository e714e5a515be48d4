#pragma once

#include <cstdio>
#include <exception>
#include <string>
#include <utility>

#include "framework/text_convert.h"
#include "framework/ui_message.h"
#include "framework/zeb_rule.h"

// What a guarded rule remembers of its failures. A rule whose import or conversion failed holds
// values that are neither the old ones nor the new ones; it refuses to be written, so that such
// values never reach a settings document, until an import succeeds again.
class CRuleGuardState {
public:
    bool Spoiled() const { return m_spoiled; }

protected:
    bool m_spoiled = false;
};

// True when `rule` is a guarded rule whose values are in doubt after a failure.
inline bool IsRuleSpoiled(const CZebRule& rule) {
    const auto* state = dynamic_cast<const CRuleGuardState*>(&rule);
    return state && state->Spoiled();
}

// Runs `body`; what it throws is reported on standard error, naming the rule and the method,
// and false is returned.
template <class Body>
bool RunRuleMethod(const CZebRule& rule, const char* method, Body&& body) noexcept {
    // Copied without allocating: the exception is gone once its handler ends, and memory may be
    // what ran out.
    char reason[256] = "";
    try {
        body();
        return true;
    } catch (const std::exception& e) {
        std::snprintf(reason, sizeof reason, ": %s", e.what());
    } catch (...) {
    }
    try {
        std::fprintf(stderr, "vantor: %s of the rule '%s' failed%s\n", method,
                     ToUtf8(rule.Name).c_str(), reason);
    } catch (...) {
        std::fprintf(stderr, "vantor: %s of a rule failed\n", method);
    }
    return false;
}

// Every rule the module hands out is one of these: each method the host may call through the
// rule keeps what it throws inside the module and reports the failure as far as the method's
// signature lets it.
template <class Rule>
class CGuardedRule final : public Rule, public CRuleGuardState {
public:
    using Rule::Rule;

    void InitParameters() override {
        if (!RunRuleMethod(*this, "InitParameters", [&] { Rule::InitParameters(); }))
            m_spoiled = true;
    }
    long Evaluate(void* a, void* b, void* c) override {
        long result = kFailed;
        RunRuleMethod(*this, "Evaluate", [&] { result = Rule::Evaluate(a, b, c); });
        return result;
    }
    void ImportFromXML(ZebXMLNode* node) override {
        m_spoiled = !RunRuleMethod(*this, "ImportFromXML", [&] { Rule::ImportFromXML(node); });
    }
    // Null, as for a rule with nothing to write, when writing fails or the values are in doubt.
    ZebXMLNode* ExportToXML() override {
        if (m_spoiled) {
            std::fprintf(stderr, "vantor: the rule '%s' is not written: an earlier step failed\n",
                         ToUtf8(this->Name).c_str());
            return nullptr;
        }
        ZebXMLNode* node = nullptr;
        RunRuleMethod(*this, "ExportToXML", [&] { node = Rule::ExportToXML(); });
        return node;
    }
    void ClearState() override {
        RunRuleMethod(*this, "ClearState", [&] { Rule::ClearState(); });
    }
    void ConvertUnits(const UnitSetting* from, const UnitSetting* to) override {
        if (!RunRuleMethod(*this, "ConvertUnits", [&] { Rule::ConvertUnits(from, to); }))
            m_spoiled = true;
    }
    bool IsApplicable(void* arg) override {
        bool applicable = false;
        RunRuleMethod(*this, "IsApplicable", [&] { applicable = Rule::IsApplicable(arg); });
        return applicable;
    }
    // A dialog that fails leaves the rule as it was before it opened, and the user is told.
    void Configure() override {
        char reason[256] = "";
        try {
            Rule before(*this);
            try {
                Rule::Configure();
                return;
            } catch (const std::exception& e) {
                std::snprintf(reason, sizeof reason, "%s", e.what());
            } catch (...) {
            }
            Rule::operator=(before);
        } catch (...) {
            // No copy to be had (the dialog never opened), or none to put back.
        }
        TellUser(reason);
    }
    long Import(ZebXMLDocument* doc, ZebXMLNode* node, void* context) override {
        long result = kFailed;
        RunRuleMethod(*this, "Import", [&] { result = Rule::Import(doc, node, context); });
        return result;
    }

private:
    static constexpr long kFailed = -1;

    void TellUser(const char* reason) noexcept {
        try {
            std::wstring text = L"The settings of the rule '" + this->Name +
                                L"' could not be changed; they stay as they were.";
            if (*reason) text += L"\n" + FromUtf8(reason);
            ZebMessageBox(text, L"Vantor", ZebMsgIcon::Error);
        } catch (...) {
            std::fprintf(stderr, "vantor: Configure of a rule failed\n");
        }
    }
};
