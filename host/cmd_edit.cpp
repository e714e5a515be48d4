// vantor-rules edit: the rule-set editor window.
#include <QApplication>
#include <cstdio>

#include "host/editor/rule_set_editor.h"
#include "host/host_command.h"
#include "host/screenshot.h"
#include "host/settings_file.h"

namespace {
int RunEdit(const std::vector<std::string>& words) {
    CommandArgs args;
    if (!ParseCommandArgs(words, args)) return 2;
    if (args.positional.size() > 1 || !args.output.empty() || args.unit) {
        std::fprintf(
            stderr,
            "vantor-rules: edit takes at most one settings file (see vantor-rules --help)\n");
        return 2;
    }
    if (!HasDisplay()) {
        std::fprintf(stderr, "vantor-rules: edit opens a window and needs a display\n");
        return 2;
    }
    if (!args.screenshot.empty() && !args.positional.empty()) {
        // No one is there to read a message box: a file that cannot be read ends the run here.
        ZebXMLDocument probe;
        if (!ReadSettingsFile(args.positional[0], probe)) return 2;
    }
    ModuleLoader loader;
    if (!LoadModule(loader, args)) return 1;
    static int argc = 1;
    static char name[] = "vantor-rules";
    static char* argv[] = {name, nullptr};
    QApplication application(argc, argv);
    InstallEditorTranslations(application);
    CRuleSetEditor editor(loader);
    // A file that cannot be read is refused with its message; the window starts with a new
    // document instead.
    // Shown first, so that the message about a file that cannot be read stands over the window.
    editor.show();
    if (!args.positional.empty()) editor.OpenFile(args.positional[0]);
    if (!args.screenshot.empty()) {
        application.processEvents();
        if (SaveWidgetPicture(editor, args.screenshot)) return 0;
        std::fprintf(stderr, "vantor-rules: the picture of the window could not be written to %s\n",
                     args.screenshot.c_str());
        return 2;
    }
    return application.exec();
}
}  // namespace

VANTOR_HOST_COMMAND(edit, "edit", "[FILE] [--screenshot PNG] [--module-dir DIR]",
                    "Opens the rule-set editor: a window listing the rules of FILE (else of a new\n"
                    "document with all twelve rules at their defaults), where each rule is\n"
                    "configured in its dialog, rules are added, removed or reset, the unit is\n"
                    "changed and the document is saved. Also what vantor-rules does without a\n"
                    "command when a display is available. With --screenshot the window is drawn\n"
                    "into the PNG file and the program ends (any Qt platform, offscreen too).\n"
                    "Exit 2 without a display.",
                    &RunEdit);
