// vantor-rules materials: the material database editor on the shared database, without a rule,
// for whoever keeps the team's material catalogue.
#include <cstdio>
#include <string>
#include <vector>

#include "dialogs/database/material_db_dlg.h"
#include "dialogs/database/material_pair_dlg.h"
#include "framework/ui/ui_service.h"
#include "host/host_command.h"
#include "host/screenshot.h"
#include "window_command.h"

namespace {
int RunMaterials(const std::vector<std::string>& words) {
    bool pair = false;
    std::string screenshot;
    for (size_t i = 0; i < words.size(); ++i) {
        if (words[i] == "--pair") {
            pair = true;
        } else if (words[i] == "--screenshot" && i + 1 < words.size()) {
            screenshot = words[++i];
        } else {
            std::fprintf(stderr,
                         "vantor-rules: materials takes [--pair] [--screenshot PNG], not '%s'\n",
                         words[i].c_str());
            return 2;
        }
    }
    return RunWindowCommand([&] {
        EnsureZebUiService();
        bool saved = false;
        if (!screenshot.empty()) PictureNextModalDialog(screenshot, saved);
        if (pair) {
            MaterialChoice choice;
            CEditMaterialPairDlg dialog(nullptr, nullptr, choice, {});
            dialog.DoModal();
        } else {
            CEditMaterialDBDlg dialog(nullptr, nullptr);
            dialog.DoModal();
        }
        if (screenshot.empty() || saved) return 0;
        std::fprintf(stderr, "vantor-rules: the picture could not be written to %s\n",
                     screenshot.c_str());
        return 1;
    });
}
}  // namespace

VANTOR_HOST_COMMAND(
    materials, "materials", "[--pair] [--screenshot PNG]",
    "Opens the material database editor on the shared database: groups and their\n"
    "materials, added and deleted at once (Cancel offers to undo them). With --pair,\n"
    "the tree a contact material cell is chosen from, which stores nothing. With\n"
    "--screenshot the dialog is drawn into PNG and closed.",
    RunMaterials);
