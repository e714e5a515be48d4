#pragma once

#include <optional>
#include <string>
#include <vector>

#include "dialogs/common/rule_dialog.h"

class CDoubleEditEx;
class CWrapperComboCtrl;
class QAbstractButton;
class PictureControl;
class QLabel;
class QWidget;

// What tells the hole and the slot alignment dialogs apart: their ids, the parameters of their two
// tolerance rows and of their option boxes, and what OK requires.
struct AlignmentDialogLayout {
    // One tolerance: operator ("<" or "<="), number and unit label over the first value of `param`;
    // with a `switchId` its label is a check box over the parameter's status.
    struct Row {
        long param;
        int operatorId, valueId, unitId;
        ZebStringId label;
        int switchId = 0;
    };
    // A check box over the status of `param`, or over its first value when it holds switches.
    struct Option {
        int boxId;
        long param;
        ZebStringId label;
        bool firstValue;
    };
    unsigned templateId;
    long imageId;
    int severityId;
    // The picture beside the controls (an id of 0 names none).
    int pictureId;
    unsigned pictureBitmap;
    Row rows[2];
    std::vector<Option> options;
    // The window title: the rule's display name, or this string.
    bool titleIsRuleName;
    ZebStringId title;
    // OK refuses an empty first tolerance with this string (none: accepted as 0).
    std::optional<ZebStringId> firstValueRequired;
    const wchar_t* helpTopic;
};

// The alignment rules' dialog: the severity, two tolerance rows and option check boxes, stored
// into the rule's parameters on OK.
class CZEBAlignmentCheckDlg : public CZEBRuleDialog {
    Q_OBJECT
public:
    CZEBAlignmentCheckDlg(CZebRule* rule, const std::wstring& unitText,
                          AlignmentDialogLayout layout);

protected:
    void LoadFromRule(CZebRule& rule) override;
    std::optional<ZebRefusal> Validate(CZebRule& rule) override;
    void StoreIntoRule(CZebRule& rule) override;

private:
    struct RowControls {
        CWrapperComboCtrl* op;
        CDoubleEditEx* value;
        QLabel* unit;
        QAbstractButton* on;
    };

    AlignmentDialogLayout m_layout;
    CWrapperComboCtrl* m_severity;
    std::vector<RowControls> m_rows;
    std::vector<QAbstractButton*> m_options;
    PictureControl* m_picture;
};

// Hole alignment: the axis offset (7800) and the diameter difference (9084), and whether through
// holes (7092) and blind holes (7094) are checked.
class CZEBSMHoleAlignmentCheckDlg : public CZEBAlignmentCheckDlg {
    Q_OBJECT
public:
    enum : int {
        kTemplateId = 6024,
        kImageId = 13010,
        kSeverityId = 6025,
        kOffsetOperatorId = 7096,
        kOffsetValueId = 7097,
        kOffsetUnitId = 7098,
        kSecondOperatorId = 9087,
        kSecondValueId = 9088,
        kSecondUnitId = 9089,
        kThroughHolesId = 7021,
        kBlindHolesId = 7022,
    };
    explicit CZEBSMHoleAlignmentCheckDlg(CZebRule* rule, const std::wstring& unitText = {});
};

// Slot alignment: the slot offset (8004, required), the offset between slot ends (9503) with its
// switch, and whether widths (9608) and directions (9606) are checked.
class CZEBASMSlotAlignmentCheckDlg : public CZEBAlignmentCheckDlg {
    Q_OBJECT
public:
    enum : int {
        kTemplateId = 8158,
        kImageId = 13090,
        kSeverityId = 8149,
        kPictureId = 8144,
        kOffsetOperatorId = 7019,
        kOffsetValueId = 7018,
        kOffsetUnitId = 7023,
        kSecondOperatorId = 9498,
        kSecondValueId = 9499,
        kSecondUnitId = 9500,
        kSecondSwitchId = 9502,
        kWidthId = 9604,
        kDirectionId = 9605,
    };
    explicit CZEBASMSlotAlignmentCheckDlg(CZebRule* rule, const std::wstring& unitText = {});
};
