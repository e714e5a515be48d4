// "gallery": one window with every shared control, to try them by hand and to show them.
#include <QApplication>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QTimer>
#include <QVBoxLayout>
#include <cstdio>

#include "app/assembly_rules_app.h"
#include "controls/custom_combo_box.h"
#include "controls/double_edit_ex.h"
#include "controls/hyper_link.h"
#include "controls/wrapper_combo_ctrl.h"
#include "controls/zeb_asm_rule_list_ctrl.h"
#include "controls/zeb_button.h"
#include "framework/ui/rule_dlg_base.h"
#include "host/host_command.h"
#include "window_command.h"

namespace {
// A rule dialog holding the controls; keys go to the table they were typed into, as in the
// rule dialogs.
class GalleryDlg : public CZEBRuleDlgBase {
public:
    GalleryDlg() : CZEBRuleDlgBase(0, 13010, GetAssemblyRulesApp()->m_helpFilePath, nullptr) {
        setWindowTitle("Vantor controls gallery");
        auto* layout = new QVBoxLayout(Body());
        m_pairs = AddTable(
            layout, "Part pairs (minimum clearance)", CZEBAsmRuleListCtrl::Mode::PartPairs,
            {L"", L"First part", L"Second part", L"Clearance"},
            {{L"1", L"bracket", L"housing", L"2.5"}, {L"2", L"shaft", L"bearing", L"0.4"}});
        m_preferred =
            AddTable(layout, "Preferred components", CZEBAsmRuleListCtrl::Mode::PreferredComponents,
                     {L"", L"Type", L"Component", L"Alternative", L"Supplier part"},
                     {{L"1", L"Bolt", L"M8x40.prt", L"M8x45.prt", L"ISO4017-8-40.prt"}});
        layout->addWidget(SmallControls());
    }

    bool OnInitDialog() override {
        CZEBRuleDlgBase::OnInitDialog();
        // Once laid out, open both in-place editors so that they can be seen at once.
        QTimer::singleShot(0, this, [this] {
            m_preferred->ChoiceList() = {L"Bolt", L"Nut", L"Screw", L"Washer"};
            m_preferred->BeginCellChoice(1, 1, CZEBListCtrl::kEditLimit);
            if (auto* choice =
                    FindZebControlAs<CCustomComboBox>(m_preferred, CZEBListCtrl::kChoiceEditorId)) {
                connect(choice, &QComboBox::activated, this, [this] {
                    std::wstring text;
                    m_preferred->EndCellChoice(text, L"is already listed.");
                });
            }
            m_pairs->BeginCellEdit(2, 1, CZEBListCtrl::kEditLimit);
        });
        return true;
    }

private:
    CZEBAsmRuleListCtrl* AddTable(QVBoxLayout* layout, const char* title,
                                  CZEBAsmRuleListCtrl::Mode mode,
                                  const std::vector<std::wstring>& headers,
                                  std::vector<CZebGridModel::Row> rows) {
        auto* box = new QGroupBox(title, Body());
        auto* table = new CZEBAsmRuleListCtrl(box);
        table->SetMode(mode, PartFileNaming::DisplayName);
        table->SetNumberedColumns(headers, 620);
        const int stored = static_cast<int>(rows.size());
        table->SetRows(std::move(rows));
        table->AppendEmptyRows(5 - stored);
        table->setMinimumSize(660, 190);
        (new QVBoxLayout(box))->addWidget(table);
        layout->addWidget(box);
        return table;
    }

    QWidget* SmallControls() {
        auto* box = new QGroupBox("Small controls", Body());
        auto* form = new QFormLayout(box);
        auto* severity = new CWrapperComboCtrl(box);
        severity->FillFromList({L"Low", L"Medium", L"High", L"Very high", L"Critical"});
        form->addRow("Drop-down list", severity);
        auto* number = new CDoubleEditEx(box);
        number->setText("12.5");
        form->addRow("Number box", number);
        auto* buttons = new QWidget(box);
        auto* row = new QHBoxLayout(buttons);
        row->setContentsMargins(0, 0, 0, 0);
        auto* add = new CZEBButton(buttons);
        add->SetBitmaps(6014, 0x646464);
        add->setFixedSize(40, 32);
        auto* remove = new CZEBButton(buttons);
        remove->setText("Delete");
        remove->SetBitmaps(6015, 0x646464);
        remove->setFixedSize(100, 32);
        row->addWidget(add);
        row->addWidget(remove);
        row->addStretch();
        form->addRow("Buttons", buttons);
        auto* link = new CHyperLink(box);
        link->SetLinkText(L"Open the help file");
        link->SetURL(GetAssemblyRulesApp()->m_helpFilePath);
        link->SetTooltipText(GetAssemblyRulesApp()->m_helpFilePath);
        link->EnableTooltip(true);
        form->addRow("Link", link);
        return box;
    }

    CZEBAsmRuleListCtrl* m_pairs;
    CZEBAsmRuleListCtrl* m_preferred;
};

int RunGallery(const std::vector<std::string>&) {
    return RunWindowCommand([] {
        GalleryDlg dlg;
        dlg.DoModal();
        return 0;
    });
}
}  // namespace

VANTOR_HOST_COMMAND(gallery, "gallery", "",
                    "Opens a window with every shared control: the component table in both modes,\n"
                    "the drop-down list, the number box, the bitmap buttons and the link.",
                    RunGallery);
