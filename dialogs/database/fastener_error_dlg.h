#pragma once

#include <QDialog>
#include <string>

#include "framework/ui/control_id.h"

class CHyperLink;
class QLabel;
class QPushButton;

// Tells the outcome of a fastener spreadsheet check, with a link that opens the check's log. A
// blocking error (isError 1) offers one button, Close; a warning (isWarning 1) offers OK to go
// on with the check and Cancel to stop it.
class CZEBFastenerErrorDlg : public QDialog {
    Q_OBJECT
public:
    enum : int { kIdOk = 1, kIdCancel = 2, kMessageId = 8165, kLinkId = 8166, kHintId = 8169 };

    CZEBFastenerErrorDlg(const std::wstring& logPath, int isWarning, int isError,
                         QWidget* parent = nullptr);

    // Runs the dialog modally: 1 for OK, 2 for Cancel or the close box.
    int DoModal();

    QWidget* GetDlgItem(int id) const { return FindZebControl(this, id); }
    const std::wstring& GetLogPath() const { return m_logPath; }

    void accept() override;
    void reject() override;

private:
    CHyperLink* m_link;
    QLabel* m_message;
    QLabel* m_hint;
    std::wstring m_logPath;
    int m_isWarning;
    int m_isError;
};
