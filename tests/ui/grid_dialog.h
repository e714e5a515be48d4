#pragma once

#include <QVBoxLayout>

#include "controls/zeb_list_ctrl.h"
#include "framework/ui/rule_dlg_base.h"

// A rule dialog holding one table, whose pre-translation hands every event to the table's key
// handler first, as the rule dialogs do.
template <class Table>
class GridDialog : public CZEBRuleDlgBase {
public:
    GridDialog() : CZEBRuleDlgBase(0, 0, L"", nullptr), table(new Table(Body())) {
        auto* layout = new QVBoxLayout(Body());
        layout->addWidget(table);
        resize(900, 400);
    }
    bool PreTranslateMessage(QObject*, QEvent* event) override { return table->KeyHandler(event) != 0; }

    Table* table;
};
