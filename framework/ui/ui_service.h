#pragma once

#include <QStringList>
#include <string>
#include <vector>

#include "framework/ui/fwui_export.h"
#include "framework/ui_message.h"

class QWidget;

// What an open-file chooser is asked for. The filter is written as the dialogs write it:
// description|patterns|description|patterns|... with patterns separated by ";".
struct ZebOpenFileRequest {
    std::wstring filter;
    std::wstring defaultExtension;
    bool multiSelect = false;
    bool fileMustExist = true;
    // Qt's chooser never offers a read-only box; callers still state it for the record.
    bool hideReadOnly = true;
    // A file to write: any name may be given, and the chooser asks before one is replaced.
    bool forSaving = false;
};

// The user interface the dialogs and controls talk to: message boxes, open-file choosers and the
// desktop's "open" action. The Qt implementation shows real windows; tests install a recording
// double that answers from a script.
class VANTOR_FWUI_API IZebUiService {
public:
    virtual ~IZebUiService() = default;
    // Returns the button pressed (ZebIdOk, ZebIdCancel, ZebIdYes, ZebIdNo).
    virtual int MessageBox(QWidget* parent, const std::wstring& caption, const std::wstring& text,
                           ZebMsgIcon icon, ZebMsgButtons buttons) = 0;
    // True when the user confirmed; `paths` then holds the chosen full paths in order.
    virtual bool OpenFiles(QWidget* parent, const ZebOpenFileRequest& request,
                           std::vector<std::wstring>& paths) = 0;
    // Opens a file or link with the desktop's "open" action; true on success.
    virtual bool ShellOpen(const std::wstring& target) = 0;
};

// The service in use. When none was installed and a QApplication exists, the Qt implementation
// is installed on first use. Null without both.
VANTOR_FWUI_API IZebUiService* GetZebUiService();
// Installs `service` (not owned; null: none) and returns the previous one. While a service is
// installed the core's message boxes go to it.
VANTOR_FWUI_API IZebUiService* SetZebUiService(IZebUiService* service);
// Installs the Qt implementation when no service is installed and a QApplication exists.
VANTOR_FWUI_API void EnsureZebUiService();

// Message box through the current service with the caption "Vantor"; OK when there is none.
VANTOR_FWUI_API int ZebUiMessage(QWidget* parent, const std::wstring& text,
                                 ZebMsgIcon icon = ZebMsgIcon::Information,
                                 ZebMsgButtons buttons = ZebMsgButtons::Ok);

// The help file as a "file://" URL, opened at the section `topic` (the URL's fragment; none when
// the topic is empty). Spaces, '#' and other characters that a URL reserves are encoded in the
// path, so the URL reads back to the same local file. A relative path is taken from the current
// folder.
VANTOR_FWUI_API std::wstring ZebHelpUrl(const std::wstring& helpFile, const std::wstring& topic);

// Opens the help file at `topic` through the current service. When the file is missing or the
// desktop cannot open it, says so in a warning message instead (fixed English text: the
// framework has no string table) and returns false.
VANTOR_FWUI_API bool ZebOpenHelp(QWidget* parent, const std::wstring& helpFile,
                                 const std::wstring& topic);

// The chooser's name filters in Qt's form ("description (patterns)"), one per pair of the
// written filter; empty parts are skipped.
VANTOR_FWUI_API QStringList ZebNameFiltersFromFilter(const std::wstring& filter);

// The Qt implementation: QMessageBox, QFileDialog, QDesktopServices.
class VANTOR_FWUI_API CZebQtUiService : public IZebUiService {
public:
    int MessageBox(QWidget* parent, const std::wstring& caption, const std::wstring& text,
                   ZebMsgIcon icon, ZebMsgButtons buttons) override;
    bool OpenFiles(QWidget* parent, const ZebOpenFileRequest& request,
                   std::vector<std::wstring>& paths) override;
    bool ShellOpen(const std::wstring& target) override;
};
