// vantor-rules export: one stored rule's table written to a workbook its dialog can import again.
#include <cstdio>
#include <memory>

#include "framework/case_fold.h"
#include "framework/text_convert.h"
#include "host/host_command.h"
#include "host/settings_file.h"
#include "util/table_export.h"

namespace {
int Refuse(const std::string& message, int status = 2) {
    std::fprintf(stderr, "vantor-rules: %s\n", message.c_str());
    return status;
}

int RunExport(const std::vector<std::string>& words) {
    CommandArgs args;
    if (!ParseCommandArgs(words, args)) return 2;
    if (args.positional.size() != 2 || args.output.empty() || args.unit || !args.screenshot.empty())
        return Refuse(
            "export needs a settings file, a rule name and -o TABLE.xlsx (see vantor-rules "
            "--help)");
    const std::string& file = args.positional[0];
    const std::string& ruleName = args.positional[1];
    ZebXMLDocument doc;
    if (!ReadSettingsFile(file, doc)) return 2;
    ZebXMLNode* element = nullptr;
    const std::vector<std::unique_ptr<ZebXMLNode>> elements = SettingsRuleElements(doc);
    for (const std::unique_ptr<ZebXMLNode>& node : elements) {
        std::wstring name;
        if (node->GetAttributeValue(L"Name", name) && ZebEqualsNoCase(name, FromUtf8(ruleName))) {
            element = node.get();
            break;
        }
    }
    if (!element) return Refuse(file + " holds no rule named '" + ruleName + "'");

    ModuleLoader loader;
    if (!LoadModule(loader, args)) return 2;
    loader.SetXMLDoc(&doc);
    CZebRule* made = RecreateRule(loader, element);
    if (!made) return Refuse("no rule of the module reads the rule '" + ruleName + "'");
    RuleHandle rule(loader, made);
    const std::optional<TableSheetKind> kind = RuleTableKind(*rule.get());
    if (!kind) return Refuse("the rule '" + ruleName + "' has no table to export", 1);

    // The unit goes with the values, so that an import into a rule set in another unit converts.
    const TableSheet sheet = RuleTableSheet(*rule.get(), *kind);
    std::wstring error;
    if (!WriteSheetFile(FromUtf8(args.output), sheet, error)) return Refuse(ToUtf8(error));
    if (sheet.leftOut > 0)
        std::fprintf(
            stderr,
            "vantor-rules: warning: %zu rows of '%s' were left out: the import could not read "
            "them back (an empty first column, or a fastener without the values it needs)\n",
            sheet.leftOut, ruleName.c_str());
    return 0;
}
}  // namespace

VANTOR_HOST_COMMAND(
    export, "export", "FILE RULE -o TABLE.xlsx [--module-dir DIR]",
    "Writes the table of the rule named RULE (its English name, letter case aside)\n"
    "in the settings document FILE to the workbook TABLE.xlsx, in the layout its\n"
    "dialog's spreadsheet import (Ctrl+I) reads, so that the workbook imports again\n"
    "into the same table. Rows that import could not read back are left out with a\n"
    "warning. Exit 0 once written, 1 for a rule without such a table, 2 for a file\n"
    "that cannot be read or written or a rule the file or the module does not have.",
    &RunExport);
