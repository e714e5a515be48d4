#pragma once

#include <QDialog>
#include <QEvent>
#include <string>

#include "framework/ui/control_id.h"
#include "framework/ui/fwui_export.h"

class CZebPreTranslateFilter;
class PictureControl;
class QPushButton;

// Base of every rule dialog: the dialog image in the picture control, OK (result 1), Cancel
// (result 2) and Help (the help file at the dialog's own section), control lookup by id, and
// message pre-translation that sees every event of the dialog and of each of its child widgets
// (also those added later) before they do. It opens with the size it was last closed with, and
// Tab follows its layout.
class VANTOR_FWUI_API CZEBRuleDlgBase : public QDialog {
    Q_OBJECT
public:
    enum : int { kIdOk = 1, kIdCancel = 2, kIdHelp = 9 };

    CZEBRuleDlgBase(unsigned templateId, long imageId, const std::wstring& helpFilePath,
                    QWidget* parent = nullptr);
    ~CZEBRuleDlgBase() override;

    // Runs the dialog modally; 1 after OK, 2 after Cancel.
    int DoModal();
    // How the last rule dialog run with DoModal ended (1 OK, 2 Cancel; 0 when none ran since the
    // last call), read once: a rule's Configure returns nothing, the host asks here.
    static int TakeLastModalResult();

    QWidget* GetDlgItem(int id) const { return FindZebControl(this, id); }
    template <class T>
    T* ControlById(int id) const {
        return FindZebControlAs<T>(this, id);
    }

    unsigned GetTemplateId() const { return m_templateId; }
    long GetImageId() const { return m_imageId; }
    const std::wstring& GetHelpFilePath() const { return m_helpFilePath; }
    // The section of the help file that Help opens: the id of its anchor in the help file (an
    // empty topic opens the file at its start). A dialog names its section in its constructor,
    // with a topic of app/help_topics.h, and adds that section to the help file of
    // every language.
    void SetHelpTopic(const std::wstring& topic) { m_helpTopic = topic; }
    const std::wstring& GetHelpTopic() const { return m_helpTopic; }
    PictureControl* GetPictureControl() const { return m_picture; }
    // Where a dialog puts its own controls (right of the picture, above the buttons).
    QWidget* Body() const { return m_body; }

    // Runs once, just before the dialog is first shown (DoModal or show): shows the dialog image.
    virtual bool OnInitDialog();
    // Sees every event of the dialog and its children first, from the first showing on; true
    // consumes it. Key events that
    // travel up to parent widgets are offered once, at the widget they were sent to.
    virtual bool PreTranslateMessage(QObject* target, QEvent* event);
    virtual void UpdateListCtrl() {}
    virtual void DeleteRow(int /*row*/) {}
    virtual void SetMaterialFlagForRule(bool /*flag*/) {}
    virtual void OnOK();
    virtual void OnCancel();
    // Opens the help file at the dialog's help topic; a missing help file is reported in a
    // warning message.
    virtual void OnHelp();

    void accept() override { OnOK(); }
    void reject() override { OnCancel(); }

protected:
    // The first showing initializes the dialog before it is placed on the screen, so that it is
    // placed at the size its controls need once filled.
    void setVisible(bool visible) override;

private:
    void ShowRuleImageUnlessPictured();

    unsigned m_templateId;
    long m_imageId;
    std::wstring m_helpFilePath;
    std::wstring m_helpTopic;
    PictureControl* m_picture;
    QWidget* m_body;
    bool m_initialized = false;
    CZebPreTranslateFilter* m_preTranslate;
};
