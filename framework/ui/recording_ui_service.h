#pragma once

#include <deque>
#include <string>
#include <vector>

#include "framework/ui/ui_service.h"

// Test double of the UI service: records every call and answers from a script. Unscripted
// message boxes answer with their first button, unscripted choosers are cancelled and unscripted
// "open" actions succeed.
class VANTOR_FWUI_API CZebRecordingUiService : public IZebUiService {
public:
    struct Message {
        std::wstring caption, text;
        ZebMsgIcon icon;
        ZebMsgButtons buttons;
    };

    // Installs itself for its lifetime, restoring the previous service afterwards.
    CZebRecordingUiService();
    ~CZebRecordingUiService() override;
    CZebRecordingUiService(const CZebRecordingUiService&) = delete;
    CZebRecordingUiService& operator=(const CZebRecordingUiService&) = delete;

    // Script: answers are used in order.
    void AnswerMessage(int button) { m_messageAnswers.push_back(button); }
    void ChooseFiles(std::vector<std::wstring> paths) { m_fileAnswers.push_back(std::move(paths)); }
    void CancelChooser() { m_fileAnswers.push_back({}); }
    void AnswerShellOpen(bool success) { m_openAnswers.push_back(success); }

    int MessageBox(QWidget* parent, const std::wstring& caption, const std::wstring& text,
                   ZebMsgIcon icon, ZebMsgButtons buttons) override;
    bool OpenFiles(QWidget* parent, const ZebOpenFileRequest& request,
                   std::vector<std::wstring>& paths) override;
    bool ShellOpen(const std::wstring& target) override;

    std::vector<Message> messages;
    std::vector<ZebOpenFileRequest> choosers;
    std::vector<std::wstring> opened;

private:
    IZebUiService* m_previous;
    std::deque<int> m_messageAnswers;
    std::deque<std::vector<std::wstring>> m_fileAnswers;
    std::deque<bool> m_openAnswers;
};
