// A catalogue of rules that fail, built with the module's own entry points into a second module,
// to show that nothing thrown inside the module reaches the host.
#include <memory>
#include <new>
#include <stdexcept>
#include <string>

#include "framework/parallel_ranges.h"
#include "framework/zeb_rule.h"
#include "framework/zeb_xml.h"
#include "module/guarded_rule.h"
#include "module/rule_catalogue.h"

namespace {
struct SoundRule : CZebRule {
    SoundRule() { Name = L"Sound"; }
};

struct RuleWhoseImportFails : CZebRule {
    RuleWhoseImportFails() { Name = L"Import fails"; }
    void ImportFromXML(ZebXMLNode*) override { throw std::runtime_error("a damaged parameter"); }
};

// Reads like a sound rule; the one method its name gives after "Fails in " throws. ConvertUnits
// and ExportToXML fail on a worker thread, out of memory, as large tables do.
struct RuleFailingIn : CZebRule {
    explicit RuleFailingIn(std::wstring method) : failing(std::move(method)) {
        Name = L"Fails in " + failing;
    }
    void Fail(const wchar_t* method) const {
        if (failing == method) throw std::runtime_error("the rule's own fault");
    }
    void InitParameters() override { Fail(L"InitParameters"); }
    long Evaluate(void*, void*, void*) override {
        Fail(L"Evaluate");
        return 0;
    }
    ZebXMLNode* ExportToXML() override {
        static ZebXMLDocument document;
        auto node = std::unique_ptr<ZebXMLNode>(document.CreateDocumentElement(L"Rule"));
        node->AddAttribute(L"Name", Name);
        node->AppendElements1("Row", 3 * kMinRowsPerRange,
                              [&](size_t row, ZebXMLElementText& text) {
                                  if (failing == L"ExportToXML" && row == 2 * kMinRowsPerRange)
                                      throw std::bad_alloc();
                                  text.BeginElement();
                                  text.EndElement();
                              });
        return node.release();
    }
    void ClearState() override { Fail(L"ClearState"); }
    void ConvertUnits(const UnitSetting* from, const UnitSetting* to) override {
        CZebRule::ConvertUnits(from, to);
        ZebForRanges(kMaxRanges * kMinRowsPerRange, [&](size_t begin, size_t) {
            if (failing == L"ConvertUnits" && begin > 0) throw std::bad_alloc();
        });
    }
    bool IsApplicable(void*) override {
        Fail(L"IsApplicable");
        return true;
    }
    // Changes the rule, as a dialog's OK does, and then fails.
    void Configure() override {
        Summary = L"changed by the dialog";
        Fail(L"Configure");
    }
    long Import(ZebXMLDocument*, ZebXMLNode*, void*) override {
        Fail(L"Import");
        return 0;
    }

    std::wstring failing;
};

CZebRule* MakeSound() { return new CGuardedRule<SoundRule>; }
CZebRule* MakeFailing() { throw std::runtime_error("no memory left for the rule"); }
CZebRule* MakeImportFails() { return new CGuardedRule<RuleWhoseImportFails>; }
}  // namespace

const std::vector<RuleCatalogueEntry>& RuleCreationOrder() {
    static const std::vector<RuleCatalogueEntry> order{{IDS_RULE_HOLE_ALIGNMENT, &MakeSound},
                                                       {IDS_RULE_SLOT_ALIGNMENT, &MakeFailing},
                                                       {IDS_RULE_CONTACT_MATERIAL, &MakeSound}};
    return order;
}

const std::vector<RuleCatalogueEntry>& RuleLookupOrder() { return RuleCreationOrder(); }

CZebRule* CreateRuleByName(const std::wstring& name) {
    if (name == L"Sound") return MakeSound();
    if (name == L"Import fails") return MakeImportFails();
    if (name == L"Creation fails") return MakeFailing();
    const std::wstring failingIn = L"Fails in ";
    if (name.starts_with(failingIn))
        return new CGuardedRule<RuleFailingIn>(name.substr(failingIn.size()));
    return nullptr;
}
