#include "framework/ui/recording_ui_service.h"

CZebRecordingUiService::CZebRecordingUiService() : m_previous(SetZebUiService(this)) {}

CZebRecordingUiService::~CZebRecordingUiService() { SetZebUiService(m_previous); }

int CZebRecordingUiService::MessageBox(QWidget*, const std::wstring& caption,
                                       const std::wstring& text, ZebMsgIcon icon,
                                       ZebMsgButtons buttons) {
    messages.push_back({caption, text, icon, buttons});
    if (!m_messageAnswers.empty()) {
        const int answer = m_messageAnswers.front();
        m_messageAnswers.pop_front();
        return answer;
    }
    return ZebFirstButtonAnswer(buttons);
}

bool CZebRecordingUiService::OpenFiles(QWidget*, const ZebOpenFileRequest& request,
                                       std::vector<std::wstring>& paths) {
    choosers.push_back(request);
    if (m_fileAnswers.empty()) return false;
    std::vector<std::wstring> answer = std::move(m_fileAnswers.front());
    m_fileAnswers.pop_front();
    if (answer.empty()) return false;
    paths = std::move(answer);
    return true;
}

bool CZebRecordingUiService::ShellOpen(const std::wstring& target) {
    opened.push_back(target);
    if (m_openAnswers.empty()) return true;
    const bool answer = m_openAnswers.front();
    m_openAnswers.pop_front();
    return answer;
}
