#include "hardware_db_dialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>
#include <set>

#include "database/service/data_helper.h"
#include "framework/ui_message.h"

namespace {

QString Q(const std::wstring& text) { return QString::fromStdWString(text); }
std::wstring W(const QString& text) { return text.trimmed().toStdWString(); }

QString LengthText(double length) { return QString::number(length, 'g', 10); }

enum Column { kDesignation, kKind, kStandard, kThread, kLength, kMaterial, kColumns };

}  // namespace

int ShowBridgeMessage(QWidget* parent, const QString& text, ZebMsgIcon icon,
                      ZebMsgButtons buttons) {
    if (GetZebMessageSink()) return ZebMessageBox(text.toStdWString(), L"Vantor", icon, buttons);
    if (buttons == ZebMsgButtons::YesNo)
        return QMessageBox::question(parent, "Vantor", text) == QMessageBox::Yes ? ZebIdYes
                                                                                 : ZebIdNo;
    if (icon == ZebMsgIcon::Error)
        QMessageBox::critical(parent, "Vantor", text);
    else
        QMessageBox::warning(parent, "Vantor", text);
    return ZebIdOk;
}

CZEBHardwareDBDlg::CZEBHardwareDBDlg(QWidget* parent) : QDialog(parent) {
    setObjectName("hardwareDatabaseDialog");
    setWindowTitle(QString("Hardware database"));
    setModal(true);

    table_ = new QTableWidget(0, kColumns, this);
    table_->setObjectName("hardwareTable");
    table_->setHorizontalHeaderLabels({QString("Designation"), QString("Kind"), QString("Standard"),
                                       QString("Thread"), QString("Length (mm)"),
                                       QString("Material")});
    table_->setSelectionBehavior(QAbstractItemView::SelectRows);
    table_->setSelectionMode(QAbstractItemView::SingleSelection);
    table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table_->horizontalHeader()->setStretchLastSection(true);
    table_->verticalHeader()->hide();

    designation_ = new QLineEdit(this);
    designation_->setObjectName("designationEdit");
    designation_->setMaxLength(260);
    kind_ = new QLineEdit(this);
    kind_->setObjectName("kindEdit");
    standard_ = new QLineEdit(this);
    standard_->setObjectName("standardEdit");
    thread_ = new QComboBox(this);
    thread_->setObjectName("threadCombo");
    thread_->setEditable(true);
    length_ = new QDoubleSpinBox(this);
    length_->setObjectName("lengthSpin");
    length_->setRange(0.0, 100000.0);
    length_->setDecimals(2);
    length_->setSuffix(" mm");
    material_ = new QComboBox(this);
    material_->setObjectName("materialCombo");
    material_->setEditable(true);

    auto* form = new QFormLayout;
    form->addRow(QString("Designation"), designation_);
    form->addRow(QString("Kind"), kind_);
    form->addRow(QString("Standard"), standard_);
    form->addRow(QString("Thread"), thread_);
    form->addRow(QString("Length"), length_);
    form->addRow(QString("Material"), material_);

    add_ = new QPushButton(QString("Add"), this);
    add_->setObjectName("addButton");
    save_ = new QPushButton(QString("Save changes"), this);
    save_->setObjectName("saveButton");
    delete_ = new QPushButton(QString("Delete"), this);
    delete_->setObjectName("deleteButton");
    auto* close = new QDialogButtonBox(QDialogButtonBox::Close, this);
    close->button(QDialogButtonBox::Close)->setObjectName("closeButton");
    for (QPushButton* button : {add_, save_, delete_}) button->setAutoDefault(false);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(add_);
    buttons->addWidget(save_);
    buttons->addWidget(delete_);
    buttons->addStretch();
    buttons->addWidget(close);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(table_);
    layout->addLayout(form);
    layout->addLayout(buttons);
    resize(760, 520);

    connect(table_, &QTableWidget::itemSelectionChanged, this, [this] { ShowSelected(); });
    connect(designation_, &QLineEdit::textChanged, this, [this] { UpdateButtons(); });
    connect(add_, &QPushButton::clicked, this, [this] { Add(); });
    connect(save_, &QPushButton::clicked, this, [this] { Save(); });
    connect(delete_, &QPushButton::clicked, this, [this] { Delete(); });
    connect(close, &QDialogButtonBox::rejected, this, &QDialog::reject);

    if (IDatabaseCollector* db = zeb_db::ZEBDataHelper::getInstance()) {
        std::list<std::wstring> threads;
        if (db->GetThreadSizes(threads) == ZebDbOk)
            for (const std::wstring& t : threads) thread_->addItem(Q(t));
        ZebMaterialPairList pairs;
        if (db->GetMaterialPairs(pairs, 0) == ZebDbOk) {
            std::set<std::wstring> materials;
            for (const auto& pair : pairs) materials.insert(pair.second);
            material_->addItem(QString());
            for (const std::wstring& m : materials) material_->addItem(Q(m));
        }
    }
    thread_->setCurrentIndex(-1);
    Reload(0);
}

void CZEBHardwareDBDlg::Reload(int64_t selectId) {
    std::list<ZebHardwareRecord> read;
    IDatabaseCollector* db = zeb_db::ZEBDataHelper::getInstance();
    if (!db || db->GetHardwareList(read) != ZebDbOk)
        ShowBridgeMessage(this,
                          QString("The hardware records could not be read from the database."),
                          ZebMsgIcon::Error);
    records_.assign(read.begin(), read.end());

    const QSignalBlocker blocker(table_);
    table_->clearContents();
    table_->setRowCount(static_cast<int>(records_.size()));
    int selectRow = -1;
    for (int row = 0; row < static_cast<int>(records_.size()); ++row) {
        const ZebHardwareRecord& r = records_[row];
        const QString texts[kColumns] = {Q(r.designation),
                                         Q(r.kind),
                                         Q(r.standard),
                                         Q(r.thread),
                                         r.length > 0 ? LengthText(r.length) : QString(),
                                         Q(r.material)};
        for (int column = 0; column < kColumns; ++column)
            table_->setItem(row, column, new QTableWidgetItem(texts[column]));
        if (r.id == selectId) selectRow = row;
    }
    table_->resizeColumnsToContents();
    if (selectRow >= 0) table_->selectRow(selectRow);
    UpdateButtons();
}

const ZebHardwareRecord* CZEBHardwareDBDlg::Selected() const {
    const QList<QTableWidgetItem*> items = table_->selectedItems();
    if (items.isEmpty()) return nullptr;
    const int row = items.first()->row();
    return row < static_cast<int>(records_.size()) ? &records_[row] : nullptr;
}

void CZEBHardwareDBDlg::ShowSelected() {
    if (const ZebHardwareRecord* r = Selected()) {
        designation_->setText(Q(r->designation));
        kind_->setText(Q(r->kind));
        standard_->setText(Q(r->standard));
        thread_->setCurrentText(Q(r->thread));
        length_->setValue(r->length);
        material_->setCurrentText(Q(r->material));
    }
    UpdateButtons();
}

void CZEBHardwareDBDlg::UpdateButtons() {
    const bool named = !designation_->text().trimmed().isEmpty();
    add_->setEnabled(named);
    save_->setEnabled(named && Selected());
    delete_->setEnabled(Selected() != nullptr);
}

ZebHardwareRecord CZEBHardwareDBDlg::RecordFromFields() const {
    ZebHardwareRecord record;
    record.designation = W(designation_->text());
    record.kind = W(kind_->text());
    record.standard = W(standard_->text());
    record.thread = W(thread_->currentText());
    record.length = length_->value();
    record.material = W(material_->currentText());
    return record;
}

void CZEBHardwareDBDlg::Add() {
    ZebHardwareRecord record = RecordFromFields();
    if (record.designation.empty()) {
        ShowBridgeMessage(this, QString("Enter the designation of the record."),
                          ZebMsgIcon::Information);
        return;
    }
    IDatabaseCollector* db = zeb_db::ZEBDataHelper::getInstance();
    const int32_t result = db ? db->AddHardwareRecord(record) : ZebDbFailed;
    if (result == ZebDbExists) {
        ShowBridgeMessage(
            this,
            QString("A record \"%1\" already exists in the database.").arg(Q(record.designation)),
            ZebMsgIcon::Information);
        return;
    }
    if (result != ZebDbOk) {
        ShowBridgeMessage(this, QString("The record could not be saved in the database."),
                          ZebMsgIcon::Error);
        return;
    }
    Reload(record.id);
}

void CZEBHardwareDBDlg::Save() {
    const ZebHardwareRecord* selected = Selected();
    if (!selected) return;
    ZebHardwareRecord record = RecordFromFields();
    record.id = selected->id;
    IDatabaseCollector* db = zeb_db::ZEBDataHelper::getInstance();
    const int32_t result = db ? db->UpdateHardwareRecord(record) : ZebDbFailed;
    if (result == ZebDbExists) {
        ShowBridgeMessage(this,
                          QString("Another record is named \"%1\".").arg(Q(record.designation)),
                          ZebMsgIcon::Information);
        return;
    }
    if (result != ZebDbOk) {
        ShowBridgeMessage(this, QString("The changes could not be saved in the database."),
                          ZebMsgIcon::Error);
        Reload(0);
        return;
    }
    Reload(record.id);
}

void CZEBHardwareDBDlg::Delete() {
    const ZebHardwareRecord* selected = Selected();
    if (!selected) return;
    const ZebHardwareRecord record = *selected;
    if (ShowBridgeMessage(
            this, QString("Delete the record \"%1\" from the database?").arg(Q(record.designation)),
            ZebMsgIcon::Question, ZebMsgButtons::YesNo) != ZebIdYes)
        return;
    IDatabaseCollector* db = zeb_db::ZEBDataHelper::getInstance();
    if (!db || db->DeleteHardwareRecord(record.id) != ZebDbOk)
        ShowBridgeMessage(this, QString("The record could not be deleted from the database."),
                          ZebMsgIcon::Error);
    Reload(0);
}
