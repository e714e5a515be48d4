#pragma once

#include <QVBoxLayout>

#include "controls/zeb_list_ctrl.h"
#include "framework/ui/rule_dlg_base.h"

// A rule dialog holding one table, which takes its own keys as in every rule dialog.
template <class Table>
class GridDialog : public CZEBRuleDlgBase {
public:
    GridDialog() : CZEBRuleDlgBase(0, 0, L"", nullptr), table(new Table(Body())) {
        auto* layout = new QVBoxLayout(Body());
        layout->addWidget(table);
        resize(900, 400);
    }

    Table* table;
};
