#pragma once

#include <string>

#include "framework/vantor_export.h"

// Message boxes of the core, without a user interface toolkit: by default they go to standard
// error; the user interface installs a sink that shows real message boxes.
// Plain: a message box without an icon.
enum class ZebMsgIcon { Information, Warning, Error, Question, Plain };
// SaveDiscardCancel asks about unsaved changes: Save answers ZebIdYes, Discard ZebIdNo.
enum class ZebMsgButtons { Ok, OkCancel, YesNo, SaveDiscardCancel };
enum ZebMsgResult : int { ZebIdOk = 1, ZebIdCancel = 2, ZebIdYes = 6, ZebIdNo = 7 };

// The answer of a box's first button, given where no one can be asked.
inline int ZebFirstButtonAnswer(ZebMsgButtons buttons) {
    return buttons == ZebMsgButtons::Ok || buttons == ZebMsgButtons::OkCancel ? ZebIdOk : ZebIdYes;
}

class VANTOR_FW_API IZebMessageSink {
public:
    virtual ~IZebMessageSink() = default;
    // Returns the button pressed.
    virtual int ShowMessage(const std::wstring& caption, const std::wstring& text, ZebMsgIcon icon,
                            ZebMsgButtons buttons) = 0;
};

// Installs `sink` (null: back to standard error) and returns the previous one.
VANTOR_FW_API IZebMessageSink* SetZebMessageSink(IZebMessageSink* sink);
VANTOR_FW_API IZebMessageSink* GetZebMessageSink();

// Shows a message through the installed sink. Without one the text goes to standard error and
// the answer is OK (or Yes).
VANTOR_FW_API int ZebMessageBox(const std::wstring& text, const std::wstring& caption = L"Vantor",
                                ZebMsgIcon icon = ZebMsgIcon::Information,
                                ZebMsgButtons buttons = ZebMsgButtons::Ok);
